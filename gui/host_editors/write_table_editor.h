// The editor of WriteCSV, WriteParquet and WriteArrow: the file, what becomes of one that is there,
// whether it is one for each value, which columns are written, and with which types.
//
// Threads: the user-interface thread; the disk is asked on another one.
#pragma once

#include <QTimer>

#include "gui/host_editors/host_editor.h"
#include "host/contract/pin_columns.h"
#include "host/files/file_signatures.h"
#include "host/tables/files/output_settings.h"
#include "host/widgets/background_task.h"
#include "host/widgets/theme.h"

namespace kelvarin {

class WrittenColumnsView;

class WriteTableEditor : public HostEditor {
  Q_OBJECT

 public:
  WriteTableEditor(ActionItem& action, FileFormat format, QWidget* parent);

  bool isBusy() const { return m_task.isRunning(); }

 protected:
  void collect(EditedElement& element) const override;
  void settingsChanged() override { look(); }

 private:
  struct State {
    Severity severity = Severity::information;
    QString text;
  };

  QString filter() const;
  void addCsvFields();
  void addArrowFields();
  void addOutputFields();
  void addColumns();
  void look();
  static State stateOf(const QString& file, FileFormat format, const OutputSettings& settings);
  void askForColumns();
  void showColumns();
  void setType(const QString& column, const QString& type);

  const ActionItem* m_inGraph;  // null once a change has been reported, since it is replaced then
  FileFormat m_format;
  InfoLine* m_state;
  WrittenColumnsView* m_columns;
  PinColumns m_pinColumns;
  EditedElement m_typedColumns;  // whose children are those of the action
  QTimer m_askAgain;
  BackgroundTask m_task;
};

}  // namespace kelvarin
