// The rows that a debug run has shown or passed by, as a table: why it stopped, the variables, the
// results, and what failed.
//
// Used by DebuggerPanel.
#pragma once

#include <memory>

#include <QAbstractTableModel>

#include "ui/debugger/row_history.h"

namespace kelvarin {

class HistoryModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setRows(const RowHistory& rows);
  // Of all rows, with a line of names; texts in quotes, nulls empty.
  QString csv() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  enum FixedColumn { numberColumn, reasonColumn, fixedColumns };

  const DebuggedRow& rowAt(int row) const { return *m_rows.at(static_cast<std::size_t>(row)); }
  // Null where the column is none of values, or the row has none.
  const ExpressionValue* valueAt(const DebuggedRow& row, int column) const;
  QString textAt(const DebuggedRow& row, int column) const;
  QString name(int column) const;
  int alignmentOf(int column) const;

  RowHistory m_rows;
  std::shared_ptr<const RowNames> m_names;
};

}  // namespace kelvarin
