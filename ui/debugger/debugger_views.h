// The tables of a step debugger: the variables and the parts of the expression in the row that is
// shown, and on a page of their own the rows that went by.
//
// Used by DebuggerPanel, which decides what is shown.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QTabWidget>

#include "ui/debugger/row_history.h"
#include "ui/language/part_evaluation.h"

class QSplitter;
class QTableView;
class QTreeView;

namespace kelvarin {

class HistoryModel;
class PartsModel;
class RowVariablesModel;

class DebuggerViews : public QTabWidget {
  Q_OBJECT

 public:
  explicit DebuggerViews(QWidget* parent);

  void setHistory(const RowHistory& rows);
  // `index`: of the row in the history. `before`: the values of the row before it, if any.
  void showRow(std::size_t index, std::vector<VariableValue> values,
               const std::vector<VariableValue>& before);
  void showParts(const PartValues& values);
  void clear();
  // To what they show now, and to the font.
  void fitColumns();

  // Of the variables of the row, as the user edited them.
  const std::vector<VariableValue>& values() const;
  const PartValues& parts() const;
  bool isEdited() const;
  void undoEdits();

 signals:
  void edited();
  void partChosen(qsizetype start, qsizetype size);
  void rowChosen(std::size_t index);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeRowPage();
  QWidget* makeHistoryPage();
  void fitTree();
  void fitRows();

  RowVariablesModel* m_variables;
  PartsModel* m_parts;
  HistoryModel* m_history;
  QSplitter* m_rowPage = nullptr;
  QTableView* m_variableTable = nullptr;
  QTreeView* m_tree = nullptr;
  QTableView* m_historyTable = nullptr;
  bool m_isFitted = false;  // columns have the width of what they showed
};

}  // namespace kelvarin
