// Verifies or salvages a columnar file: progress, a button to cancel, and the result in words.
//
// It is not modal for the program, only for its window.
// Threads: the user-interface thread; the work runs beside it.
#pragma once

#include <atomic>
#include <memory>

#include <QDialog>
#include <QTimer>

#include "host/widgets/background_task.h"
#include "ui/columnar/summary_texts.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace kelvarin {

class InfoLine;

class TableWorkDialog : public QDialog {
  Q_OBJECT

 public:
  explicit TableWorkDialog(QWidget* parent = nullptr);
  ~TableWorkDialog() override;

  // Each starts at once. `rows` are those of the table, for the progress; 0: unknown.
  void verify(const QString& file, std::uint64_t rows);
  void salvage(const QString& file, const QString& newFile, std::uint64_t rows);

  bool isBusy() const { return m_task.isRunning(); }

 protected:
  void reject() override;

 private:
  void begin(const QString& title, const QString& sentence, std::uint64_t rows);
  void end(const ShownText& result, const QStringList& lines = {});
  void showProgress();

  using Progress = std::shared_ptr<std::atomic<std::uint64_t>>;

  QLabel* m_sentence;
  QProgressBar* m_bar;
  InfoLine* m_result;
  QPlainTextEdit* m_lines;
  QPushButton* m_button;
  QTimer m_timer;
  Progress m_progress = std::make_shared<std::atomic<std::uint64_t>>(0);
  std::uint64_t m_rows = 0;
  bool m_isStopped = false;
  BackgroundTask m_task;
};

}  // namespace kelvarin
