// The base of the editors of actions that read a table file: the file, what is in it, the types of
// its columns, and what becomes of values that do not fit.
//
// The file is looked into after each change, on a thread of its own.
// Threads: the user-interface thread.
#pragma once

#include "gui/host_editors/host_editor.h"
#include "gui/host_editors/table_look.h"
#include "host/files/file_signatures.h"
#include "host/widgets/background_task.h"

class QSortFilterProxyModel;
class QTabWidget;

namespace kelvarin {

class TableColumnsModel;
class TableRowsModel;

class ReadTableEditor : public HostEditor {
  Q_OBJECT

 public:
  // The file is being looked into.
  virtual bool isBusy() const { return m_task.isRunning(); }

 protected:
  ReadTableEditor(ActionItem& action, QWidget* parent);

  // Puts the groups below what a derived editor has added; its last words.
  void addPages();
  QFormLayout& settings() const { return *m_settings; }
  QTabWidget& pages() const { return *m_pages; }

  QString path() const;  // with parameters replaced
  // The reader of that path with the settings as committed; called on another thread, so it holds
  // copies. An error is one of the settings.
  virtual MakeBatchReader reader(const QString& path) const = 0;
  virtual bool hasHeader() const { return true; }
  // The elements of a file without header name its columns in their order, as far as all are read.
  bool areNamedInOrder() const;
  virtual FileFormat format() const = 0;
  virtual QString filter() const = 0;  // of the file dialog

  void collect(EditedElement& element) const override;
  void settingsChanged() override { look(); }
  virtual void look();
  // Somebody who comes back to the window may have changed the file.
  void changeEvent(QEvent* event) override;

 private:
  void addFileGroup();
  QWidget* newColumnsPage();
  QWidget* newRowsPage();
  void showLook(const TableLook& look);
  void compareWithDisk();
  void showNoLook(const QString& why, bool isFault);
  void setType(const QString& name, const QString& meta);
  void rename(int column, const QString& name);

  EditedElement m_columns;  // whose children are those of the action
  TableLook m_look;
  BackgroundTask m_task;
  BackgroundTask m_stateTask;
  QFormLayout* m_settings;
  QTabWidget* m_pages;
  InfoLine* m_state;
  TableColumnsModel* m_columnsModel;
  QSortFilterProxyModel* m_foundColumns;
  TableRowsModel* m_rowsModel;
};

}  // namespace kelvarin
