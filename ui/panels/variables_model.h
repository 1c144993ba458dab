// The input variables of an expression action as a table: alias, column, type, sample, and the
// value that a step debugger shows.
//
// Shown by VariablesPanel. Whatever a user entered stays, also a variable whose column is gone;
// what is wrong with a row is said by kFaultRole.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractTableModel>
#include <QStringList>

#include "expression/evaluator/expression_value.h"
#include "expression/evaluator/variables.h"
#include "host/contract/pin_columns.h"

namespace kelvarin {

class VariablesModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kAlias, kColumn, kType, kSample, kDebugValue, kColumnCount };

  explicit VariablesModel(QObject* parent = nullptr);

  const std::vector<InputVariable>& variables() const { return m_variables; }
  // Reports no edit.
  void setVariables(std::vector<InputVariable> variables);
  // Of the action's input, which the variables are compared with.
  void setInputColumns(const PinColumns& columns);
  const PinColumns& inputColumns() const { return m_input; }
  QStringList inputColumnNames() const;
  // Whether `_n` is the row number, which no variable may hide.
  void setRowNumberOffered(bool isOffered);
  // Empty: no row is shown.
  void setDebugValues(std::vector<VariableValue> values);

  // A variable without a column, at this row.
  void addEmpty(int row);
  // A variable for each column, at the end; the alias is a name that expressions can hold.
  void addColumns(const QStringList& columns);
  // As they are, at the end.
  void addVariables(const std::vector<InputVariable>& variables);
  void removeVariables(const std::vector<int>& rows);
  // The row above or below changes sides; rows at the edge stay. Ascending rows.
  void move(const std::vector<int>& rows, bool isUp);
  // In front of a row, or behind the last one. Ascending rows.
  void moveTo(const std::vector<int>& rows, int before);

  // Those of the input's columns that the expressions name and that are no variables yet, in the
  // input's order.
  QStringList missingColumns(const QStringList& expressions) const;
  // Why a variable is of no use as it is; empty where it is.
  QString fault(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Of the names for expressions, and of the rows for this model.
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
  Qt::DropActions supportedDragActions() const override { return Qt::MoveAction | Qt::CopyAction; }
  bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                       const QModelIndex& parent) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

 signals:
  // The user changed the variables.
  void edited();
  // Before edited(): no variable has the old name any more, and no other one had the new one.
  void renamed(const QString& from, const QString& to);

 private:
  const InputVariable& at(int row) const { return m_variables[static_cast<std::size_t>(row)]; }
  const PinColumns::Column* inputColumn(const QString& name) const;
  const VariableValue* debugValue(int row) const;
  QString aliasFor(const QString& column) const;
  bool hasAlias(const QString& alias) const;
  InputVariable variableFor(const QString& column,
                            const std::vector<InputVariable>& existing) const;
  void setColumn(InputVariable& variable, const QString& column) const;
  QVariant debugData(int row, int role) const;
  void reportEdit();
  bool setCell(InputVariable& variable, int column, const QString& text);
  void reportRenaming(const QString& from, const QString& to);
  void moveRow(int row, int before);
  // Empty where others dragged something.
  std::vector<int> draggedRows(const QMimeData* data) const;

  std::vector<InputVariable> m_variables;
  PinColumns m_input;
  bool m_isRowNumberOffered = true;
  std::vector<VariableValue> m_debugValues;
};

}  // namespace kelvarin
