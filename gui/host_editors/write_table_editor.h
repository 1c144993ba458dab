// The editor of WriteCSV, WriteParquet and WriteArrow: the file, what becomes of one that is there,
// and which columns are written.
//
// Threads: the user-interface thread; the disk is asked on another one.
#pragma once

#include <QTimer>

#include "gui/host_editors/host_editor.h"
#include "host/contract/pin_columns.h"
#include "host/files/file_signatures.h"
#include "host/widgets/background_task.h"
#include "host/widgets/theme.h"

class QLabel;
class QListWidget;

namespace kelvarin {

class SearchField;

class WriteTableEditor : public HostEditor {
  Q_OBJECT

 public:
  WriteTableEditor(ActionItem& action, FileFormat format, QWidget* parent);

  bool isBusy() const { return m_task.isRunning(); }

 protected:
  void settingsChanged() override { look(); }

 private:
  struct State {
    Severity severity = Severity::information;
    QString text;
  };

  QString filter() const;
  void addCsvFields();
  void addArrowFields();
  void addColumns();
  void look();
  static State stateOf(const QString& file, FileFormat format);
  void askForColumns();
  void showColumns(const PinColumns& columns);
  void showMatches(const QString& text);

  const ActionItem* m_inGraph;  // null once a change has been reported, since it is replaced then
  FileFormat m_format;
  InfoLine* m_state;
  QLabel* m_columnsLabel;
  SearchField* m_search;
  QListWidget* m_columns;
  QTimer m_askAgain;
  BackgroundTask m_task;
};

}  // namespace kelvarin
