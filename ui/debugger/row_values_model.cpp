#include "ui/debugger/row_values_model.h"

#include <algorithm>

#include <QFont>

#include "expression/evaluator/number_text.h"
#include "host/widgets/icons.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

RowValuesModel::RowValuesModel(Kind kind, QObject* parent)
    : QAbstractTableModel(parent), m_kind(kind) {}

void RowValuesModel::setRow(std::vector<VariableValue> values,
                            const std::vector<VariableValue>& before,
                            std::vector<ResultFault> faults) {
  beginResetModel();
  m_values = std::move(values);
  m_faults = std::move(faults);
  m_edited.clear();
  m_own.clear();
  m_before.clear();
  for (const VariableValue& variable : m_values) {
    m_own.push_back(variable.value);
  }
  if (before.size() == m_values.size()) {
    for (const VariableValue& variable : before) {
      m_before.push_back(variable.value);
    }
  }
  endResetModel();
}

void RowValuesModel::undoEdits() {
  for (const std::size_t row : std::exchange(m_edited, {})) {
    m_values[row].value = m_own[row];
  }
  emit dataChanged(index(0, 0), index(rowCount() - 1, columnTotal - 1));
  emit edited();
}

int RowValuesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_values.size());
}

int RowValuesModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnTotal;
}

const ExpressionValue* RowValuesModel::valueBefore(std::size_t row) const {
  if (m_edited.contains(row)) {
    return &m_own[row];
  }
  const bool hasChanged = !m_before.empty() && !isSameValue(m_before[row], m_values[row].value);
  return hasChanged ? &m_before[row] : nullptr;
}

const ResultFault* RowValuesModel::faultAt(std::size_t row) const {
  return row < m_faults.size() && !m_faults[row].text.isEmpty() ? &m_faults[row] : nullptr;
}

// Changed values are bold, edited and failed ones have an icon, so that none depends on a colour.
QVariant RowValuesModel::mark(std::size_t row, int role) const {
  if (role == Qt::FontRole) {
    QFont font;
    font.setBold(valueBefore(row) != nullptr);
    return font;
  }
  if (faultAt(row) != nullptr) {
    return icon(Severity::error);
  }
  return m_edited.contains(row) ? QVariant(icon(Severity::information)) : QVariant();
}

QVariant RowValuesModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const auto row = static_cast<std::size_t>(index.row());
  const VariableValue& variable = m_values[row];
  if (index.column() == nameColumn) {
    const bool isText = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    return isText ? QVariant(variable.name) : QVariant();
  }
  if (index.column() == valueColumn && (role == Qt::FontRole || role == Qt::DecorationRole)) {
    return mark(row, role);
  }
  const ResultFault* fault = index.column() == valueColumn ? faultAt(row) : nullptr;
  if (fault != nullptr && role == Qt::ToolTipRole) {
    return fault->text;
  }
  if (fault != nullptr && !fault->hasValue) {
    return role == Qt::DisplayRole ? QVariant(tr("error")) : QVariant();
  }
  return valueData(row, index.column(), role);
}

QVariant RowValuesModel::valueData(std::size_t row, int column, int role) const {
  const ExpressionValue* value = column == valueColumn ? &m_values[row].value : valueBefore(row);
  if (value == nullptr) {
    return {};
  }
  const ShownValue shown = shownValue(*value);
  switch (role) {
    case Qt::DisplayRole:
      return shown.text;
    case Qt::EditRole:
      return value->isNull() ? shown.text : shown.whole;
    case Qt::ToolTipRole:
      return column == valueColumn && m_edited.contains(row)
                 ? tr("%1, edited for this row. The data stay as they are.").arg(shown.whole)
                 : shown.whole;
    case kValueKindRole:
      return static_cast<int>(shown.kind);
    default:
      return {};
  }
}

QVariant RowValuesModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  if (role == Qt::ToolTipRole && section == beforeColumn) {
    return tr("The value in the row before, where it was another one");
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case nameColumn:
      return m_kind == Kind::variables ? tr("Variable") : tr("Result");
    case valueColumn:
      return tr("Value");
    default:
      return tr("Before");
  }
}

Qt::ItemFlags RowValuesModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  const bool isEditable = m_kind == Kind::variables && index.column() == valueColumn;
  return isEditable ? flags | Qt::ItemIsEditable : flags;
}

bool RowValuesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable)) {
    return false;
  }
  const auto row = static_cast<std::size_t>(index.row());
  const QString text = value.toString();
  ExpressionValue made = m_own[row];
  const bool isText = made.type == ExpressionValue::Type::text;
  if (text.trimmed() == QStringLiteral("null")) {
    made = isText ? ExpressionValue::nullText() : ExpressionValue::ofNumber(kNullNumber);
  } else if (isText) {
    made = ExpressionValue::ofText(text.toStdString());
  } else if (const auto number = numberOfWholeText(text.trimmed().toStdString())) {
    made = ExpressionValue::ofNumber(*number);
  } else {
    return false;
  }
  if (isSameValue(made, m_values[row].value)) {
    return true;
  }
  m_values[row].value = made;
  if (isSameValue(made, m_own[row])) {
    m_edited.erase(row);
  } else {
    m_edited.insert(row);
  }
  emit dataChanged(this->index(index.row(), 0), this->index(index.row(), columnTotal - 1));
  emit edited();
  return true;
}

}  // namespace kelvarin
