// The variables of the debugged row: name, value, and the value before where it has changed.
//
// A value can be edited, for this row and for the debugger's own evaluation alone.
// Used by DebuggerPanel.
#pragma once

#include <set>
#include <vector>

#include <QAbstractTableModel>

#include "expression/evaluator/expression_value.h"

namespace kelvarin {

class RowVariablesModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { nameColumn, valueColumn, beforeColumn, columnTotal };

  using QAbstractTableModel::QAbstractTableModel;

  // `before`: those of the row before it; empty: there is none. What was edited is forgotten.
  void setRow(std::vector<VariableValue> values, const std::vector<VariableValue>& before);

  // With what was edited.
  const std::vector<VariableValue>& values() const { return m_values; }
  bool isEdited() const { return !m_edited.empty(); }
  // The row's own values again.
  void undoEdits();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // "null" is the missing value; a number that cannot be read is refused.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 signals:
  void edited();

 private:
  // Of the row before, or of this row before it was edited; null: the value is the same.
  const ExpressionValue* valueBefore(std::size_t row) const;
  QVariant mark(std::size_t row, int role) const;

  std::vector<VariableValue> m_values;
  std::vector<ExpressionValue> m_own;     // of the row, before editing
  std::vector<ExpressionValue> m_before;  // of the row before; empty: there is none
  std::set<std::size_t> m_edited;
};

}  // namespace kelvarin
