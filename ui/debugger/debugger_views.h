// The tables of a step debugger: the variables, the results and the parts of the expression in the
// row that is shown, and on a page of their own the rows that went by.
//
// Used by DebuggerPanel, which decides what is shown.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QTabWidget>

#include "ui/debugger/row_history.h"
#include "ui/debugger/row_values.h"
#include "ui/debugger/sized_view.h"
#include "ui/language/part_evaluation.h"

class QSplitter;

namespace kelvarin {

class ColumnFit;
class HistoryModel;
class PartsModel;
class RowValuesModel;

class DebuggerViews : public QTabWidget {
  Q_OBJECT

 public:
  explicit DebuggerViews(QWidget* parent);

  void setHistory(const RowHistory& rows);
  // `index`: of the row in the history. `before`: the values of the row before it, if any.
  void showRow(std::size_t index, const RowValues& values, const RowValues& before);
  void showParts(const PartValues& values);
  void clear();
  // Takes the height for so many, so that nothing moves when they come.
  void setExpectedResults(int count);
  // To what they show now.
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
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeRowPage();
  QWidget* makeHistoryPage();
  SizedView<QTableView>* makeTable(QWidget* parent, QAbstractItemModel* model, const QString& name);
  void fitTree();
  void fitRows();
  void fitResults();

  RowValuesModel* m_variables;
  RowValuesModel* m_results;
  PartsModel* m_parts;
  HistoryModel* m_history;
  QSplitter* m_rowPage = nullptr;
  SizedView<QTableView>* m_variableTable = nullptr;
  SizedView<QTableView>* m_resultTable = nullptr;
  SizedView<QTreeView>* m_tree = nullptr;
  SizedView<QTableView>* m_historyTable = nullptr;
  std::vector<SizedView<QTableView>*> m_tables;
  std::vector<ColumnFit*> m_columnFits;
  int m_expectedResults = 0;
};

}  // namespace kelvarin
