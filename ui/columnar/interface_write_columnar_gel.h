// The dialog of writeColumnarGel: file and names, rows and column sets, blocks, and what becomes of
// the file that is there already.
//
// Threads: the user-interface thread; files are looked at and deleted beside it.
#pragma once

#include "columnar/actions/write_columnar_gel.h"
#include "host/widgets/background_task.h"
#include "ui/columnar/columnar_editor.h"
#include "ui/language/input_rows.h"

namespace kelvarin {

class PreviousFilePage;
class WriteBlocksPage;
class WriteColumnsPage;
class WriteFilePage;

class Interface_writeColumnarGel : public ColumnarEditor {
  Q_OBJECT

 public:
  Interface_writeColumnarGel(QWidget* parent, WriteColumnarGel& action);
  ~Interface_writeColumnarGel() override;

  bool isBusy() const {
    return m_examplesTask.isRunning() || m_oldFileTask.isRunning() || m_deletionTask.isRunning();
  }

 protected:
  void load() override;
  bool store() override;
  void committed() override;
  void insertIntoExpression(const QString& text) override;

 private:
  void takeInput();
  // Of the split column in the first rows; a few that differ.
  QStringList splitValues() const;
  void showExamples();
  // What is there under the name of the file, where there is one file.
  void lookAtOldFile();
  void prepareDeletion();
  void askBeforeDeletion(const QString& file, const QStringList& files);
  void deleteFiles(const QString& file);
  QString file() const;

  WriteColumnarGel& m_action;
  WriteFilePage* m_filePage;
  WriteColumnsPage* m_columnsPage;
  WriteBlocksPage* m_blocksPage;
  PreviousFilePage* m_previousPage;
  InputRows m_input;
  QString m_shownOldFile;  // which was looked at; null: none
  BackgroundTask m_examplesTask;
  BackgroundTask m_oldFileTask;
  BackgroundTask m_deletionTask;
};

}  // namespace kelvarin
