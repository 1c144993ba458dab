// The editor of InlineTable: the table itself, edited in place.
//
// Cells are committed after a rest, longer for large tables, so that typing into them stays quick.
// Threads: the user-interface thread.
#pragma once

#include <QModelIndexList>
#include <QTimer>

#include "gui/host_editors/host_editor.h"

class QComboBox;
class QTableView;

namespace kelvarin {

class IconButton;
class InlineTableModel;

class InlineTableEditor : public HostEditor {
  Q_OBJECT

 public:
  InlineTableEditor(ActionItem& action, QWidget* parent);

  QMap<QString, QString> uncommittedState() const override;
  void restoreUncommitted(const QMap<QString, QString>& texts) override;
  void commit() override;

 protected:
  void collect(EditedElement& element) const override;

 private:
  void addTable();
  void addActions();
  void addTableAction(const QString& text, const QKeySequence& key,
                      void (InlineTableEditor::*act)());
  void addRowButtons();
  void addColumnFields();
  void noteEdit();
  void showFaults();
  void showColumn();
  void showButtons();
  int currentRow() const;
  int currentColumn() const;
  std::vector<int> selectedRows() const;
  QModelIndexList selectedCells() const;
  void goTo(int row, int column);

  void copy();
  void paste();
  void makeNull();
  void addRow();
  void removeRows();
  void moveRow(int step);
  void addColumn();
  void removeColumn();
  void moveColumn(int step);
  void renameColumn();
  void answerPaste(const QString& id);

  InlineTableModel* m_model;
  QTableView* m_table;
  InfoLine* m_question;  // about what was pasted
  InfoLine* m_state;
  QLineEdit* m_name;
  QComboBox* m_type;
  QTimer m_rest;
  bool m_areCellsCommitted = true;
  QModelIndexList m_withDecimalCommas;
  IconButton* m_removeRows = nullptr;
  IconButton* m_rowUp = nullptr;
  IconButton* m_rowDown = nullptr;
  IconButton* m_removeColumn = nullptr;
  IconButton* m_columnLeft = nullptr;
  IconButton* m_columnRight = nullptr;
};

}  // namespace kelvarin
