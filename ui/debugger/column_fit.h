// Gives the columns of a table the width of what they show.
//
// Columns become wider, never smaller, so that nothing jumps from row to row. Only what is in sight
// is looked at, whatever the size of the table.
// Used by the tables of the step debugger.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QObject>

class QTableView;

namespace kelvarin {

class ColumnFit : public QObject {
 public:
  // The table has its model, and owns this.
  explicit ColumnFit(QTableView* table);

  void fit();
  // Other columns follow, or another font: they may become smaller.
  void restart() { m_isFitted.clear(); }

 private:
  void fitColumn(int column);

  QTableView& m_table;
  std::vector<bool> m_isFitted;  // columns with the width of what they showed
};

}  // namespace kelvarin
