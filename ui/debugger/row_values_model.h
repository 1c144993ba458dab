// The variables or the results of the debugged row: name, value, and the value before where it has
// changed.
//
// The value of a variable can be edited, for this row and for the debugger's own evaluation alone.
// Used by DebuggerViews.
#pragma once

#include <set>
#include <vector>

#include <QAbstractTableModel>

#include "ui/debugger/row_values.h"

namespace kelvarin {

class RowValuesModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { nameColumn, valueColumn, beforeColumn, columnTotal };

  enum class Kind { variables, results };

  RowValuesModel(Kind kind, QObject* parent);

  // `before`: those of the row before it; empty: there is none. What was edited is forgotten.
  void setRow(std::vector<VariableValue> values, const std::vector<VariableValue>& before,
              std::vector<ResultFault> faults = {});

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
  // Of a value without fault.
  QVariant valueData(std::size_t row, int column, int role) const;
  const ResultFault* faultAt(std::size_t row) const;

  const Kind m_kind;
  std::vector<VariableValue> m_values;
  std::vector<ExpressionValue> m_own;     // of the row, before editing
  std::vector<ExpressionValue> m_before;  // of the row before; empty: there is none
  std::vector<ResultFault> m_faults;      // one a result; none of variables
  std::set<std::size_t> m_edited;
};

}  // namespace kelvarin
