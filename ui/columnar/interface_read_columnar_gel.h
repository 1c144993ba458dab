// The dialog of ReadColumnarGel: file, columns, block filter and what becomes of damage, with a
// live view of what is in the file.
//
// Threads: the user-interface thread; files are looked into beside it.
#pragma once

#include <functional>
#include <optional>

#include "columnar/actions/block_filter_trial.h"
#include "columnar/actions/table_summary.h"
#include "host/widgets/background_task.h"
#include "ui/columnar/columnar_editor.h"
#include "ui/columnar/summary_texts.h"

namespace kelvarin {

class BlockFilterPage;
class ReadColumnsPage;
class ReadFilePage;
class ReadReliabilityPage;

class Interface_readColumnarGel : public ColumnarEditor {
  Q_OBJECT

 public:
  Interface_readColumnarGel(QWidget* parent, ReadColumnarGel& action);
  ~Interface_readColumnarGel() override;

  // Asks where a salvaged table goes, with a proposal. A file dialog unless set.
  using AskForFile =
      std::function<void(const QString& proposal, std::function<void(const QString& file)> chosen)>;
  void setAskForNewFile(AskForFile ask) { m_askForNewFile = std::move(ask); }
  // Something is being found out about the file.
  bool isBusy() const { return m_summaryTask.isRunning() || m_trialTask.isRunning(); }

 protected:
  void load() override;
  bool store() override;
  void committed() override;
  void insertIntoExpression(const QString& text) override;

 private:
  void connectPages();
  QString file() const;
  void lookIntoFile();
  void takeSummary(const Result<TableSummary, QString>& summary);
  void forgetSummary(const QString& reason, bool isFailure);
  void tryFilter();
  // Of an empty filter, and one that is switched off, there is more to say.
  ShownText wordsOnTrial(const ShownText& words, bool isEmpty) const;
  void showExtent();
  void verify();
  void salvage();
  void salvageTo(const QString& newFile);
  std::uint64_t knownRows() const { return m_summary ? m_summary->rows : 0; }

  ReadColumnarGel& m_action;
  ReadFilePage* m_filePage;
  ReadColumnsPage* m_columnsPage;
  BlockFilterPage* m_filterPage;
  ReadReliabilityPage* m_reliabilityPage;
  AskForFile m_askForNewFile;
  QString m_shownFile;  // whose summary is shown or on its way; null: none was asked for
  std::optional<TableSummary> m_summary;
  BackgroundTask m_summaryTask;
  BackgroundTask m_trialTask;
};

}  // namespace kelvarin
