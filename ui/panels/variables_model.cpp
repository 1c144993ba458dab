#include "ui/panels/variables_model.h"

#include <algorithm>
#include <memory>
#include <set>

#include <QMimeData>

#include "expression/backends/expression_text.h"
#include "expression/help/expression_hint.h"
#include "expression/tokens/expression_tokens.h"
#include "host/contract/nearest_names.h"
#include "ui/language/column_variable.h"
#include "ui/language/shown_value.h"
#include "ui/panels/variable_cells.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/variable_drag.h"

namespace kelvarin {

namespace {

const QString kRowNumber = QStringLiteral("_n");
// The model, then the rows.
const QString kRowsFormat = QStringLiteral("application/x-kelvarin-variable-rows");

}  // namespace

VariablesModel::VariablesModel(QObject* parent) : QAbstractTableModel(parent) {}

void VariablesModel::setVariables(std::vector<InputVariable> variables) {
  beginResetModel();
  m_variables = std::move(variables);
  endResetModel();
}

void VariablesModel::setInputColumns(const PinColumns& columns) {
  m_input = columns;
  if (!m_variables.empty()) {
    emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
  }
}

QStringList VariablesModel::inputColumnNames() const {
  QStringList names;
  for (const PinColumns::Column& column : m_input.columns) {
    names += column.name;
  }
  return names;
}

void VariablesModel::setRowNumberOffered(bool isOffered) {
  m_isRowNumberOffered = isOffered;
  setInputColumns(m_input);
}

void VariablesModel::setDebugValues(std::vector<VariableValue> values) {
  m_debugValues = std::move(values);
  if (!m_variables.empty()) {
    emit dataChanged(index(0, kDebugValue), index(rowCount() - 1, kDebugValue));
  }
}

const PinColumns::Column* VariablesModel::inputColumn(const QString& name) const {
  const auto found = std::find_if(m_input.columns.begin(), m_input.columns.end(),
                                  [&](const auto& column) { return column.name == name; });
  return found == m_input.columns.end() ? nullptr : &*found;
}

bool VariablesModel::hasAlias(const QString& alias) const {
  return std::any_of(m_variables.begin(), m_variables.end(),
                     [&](const InputVariable& variable) { return variable.name() == alias; });
}

QString VariablesModel::aliasFor(const QString& column) const {
  const QString name = variableNameFor(column);
  QString alias = name;
  for (int number = 2; hasAlias(alias); ++number) {
    alias = name + u'_' + QString::number(number);
  }
  return alias;
}

// The type of a column that the input has.
void VariablesModel::setColumn(InputVariable& variable, const QString& column) const {
  const bool isRenamed = variable.label.isEmpty() || variable.label == columnText(variable);
  if (variable.columns.isEmpty()) {
    variable.columns += column;
  } else {
    variable.columns.last() = column;
  }
  if (isRenamed && !isVariableName(column)) {
    variable.label = aliasFor(column);
  } else if (isRenamed) {
    variable.label.clear();
  }
  const PinColumns::Column* known = inputColumn(column);
  if (known != nullptr && kindOf(variable) != VariableKind::date) {
    setType(variable,
            known->meta == MetaTypeColumn::text ? VariableKind::text : VariableKind::number);
  }
}

// Of a column that is not known, a number.
InputVariable VariablesModel::variableFor(const QString& column,
                                          const std::vector<InputVariable>& existing) const {
  const PinColumns::Column* known = inputColumn(column);
  return variableForColumn(
      known != nullptr ? *known : PinColumns::Column{column, MetaTypeColumn::number}, existing);
}

void VariablesModel::reportEdit() {
  if (!m_variables.empty()) {  // other rows may have the same name
    emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
  }
  emit edited();
}

void VariablesModel::addEmpty(int row) {
  const int position = std::clamp(row, 0, rowCount());
  beginInsertRows({}, position, position);
  InputVariable variable;
  variable.columns = {QStringLiteral("")};  // its alias is saved without a column, too
  m_variables.insert(m_variables.begin() + position, std::move(variable));
  endInsertRows();
  reportEdit();
}

void VariablesModel::addColumns(const QStringList& columns) {
  std::vector<InputVariable> added = m_variables;
  for (const QString& column : columns) {
    added.push_back(variableFor(column, added));
  }
  addVariables({added.begin() + rowCount(), added.end()});
}

void VariablesModel::addVariables(const std::vector<InputVariable>& variables) {
  if (variables.empty()) {
    return;
  }
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(variables.size()) - 1);
  m_variables.insert(m_variables.end(), variables.begin(), variables.end());
  endInsertRows();
  reportEdit();
}

void VariablesModel::removeVariables(const std::vector<int>& rows) {
  if (rows.empty()) {
    return;
  }
  std::vector<int> descending = rows;
  std::sort(descending.rbegin(), descending.rend());
  for (const int row : descending) {
    beginRemoveRows({}, row, row);
    m_variables.erase(m_variables.begin() + row);
    endRemoveRows();
  }
  reportEdit();
}

void VariablesModel::move(const std::vector<int>& rows, bool isUp) {
  const int edge = isUp ? 0 : rowCount() - 1;
  if (rows.empty() || (isUp ? rows.front() : rows.back()) == edge) {
    return;
  }
  const auto moveOne = [&](int row) {
    const int target = isUp ? row - 1 : row + 1;
    beginMoveRows({}, row, row, {}, isUp ? target : target + 1);
    std::swap(m_variables[static_cast<std::size_t>(row)],
              m_variables[static_cast<std::size_t>(target)]);
    endMoveRows();
  };
  if (isUp) {
    std::for_each(rows.begin(), rows.end(), moveOne);
  } else {
    std::for_each(rows.rbegin(), rows.rend(), moveOne);
  }
  reportEdit();
}

QStringList VariablesModel::missingColumns(const QStringList& expressions) const {
  QSet<QString> named;
  for (const QString& expression : expressions) {
    named += valueNames(expression);
  }
  QStringList missing;
  for (const PinColumns::Column& column : m_input.columns) {
    for (const QString& name : {column.name, variableNameFor(column.name)}) {
      if (named.contains(name) && !hasAlias(name) && !missing.contains(column.name)) {
        missing += column.name;
      }
    }
  }
  return missing;
}

QString VariablesModel::fault(int row) const {
  const InputVariable& variable = at(row);
  const QString name = variable.name();
  if (variable.columns.isEmpty() || variable.columns.last().isEmpty()) {
    return tr("No column is chosen.");
  }
  if (!isVariableName(name)) {
    return tr("Expressions cannot hold the name '%1'. Take letters, digits and _ for the alias.")
        .arg(name);
  }
  if (m_isRowNumberOffered && name == kRowNumber) {
    return tr("_n is the row number. Give the variable another alias, or switch _n off.");
  }
  for (int above = 0; above < row; ++above) {
    if (at(above).name() == name) {
      return tr("Another variable above is called '%1', too: expressions see that one.").arg(name);
    }
  }
  for (const QString& column : variable.columns) {
    if (m_input.isKnown && !column.contains(u"${") && inputColumn(column) == nullptr) {
      const QStringList nearest = nearestNames(column, inputColumnNames());
      return nearest.isEmpty() ? tr("The input has no column '%1'.").arg(column)
                               : tr("The input has no column '%1'. Did you mean '%2'?")
                                     .arg(column, nearest.join("', '"));
    }
  }
  return {};
}

const VariableValue* VariablesModel::debugValue(int row) const {
  const QString name = at(row).name();
  const auto found = std::find_if(m_debugValues.begin(), m_debugValues.end(),
                                  [&](const VariableValue& value) { return value.name == name; });
  return found == m_debugValues.end() ? nullptr : &*found;
}

int VariablesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_variables.size());
}

int VariablesModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant VariablesModel::debugData(int row, int role) const {
  const VariableValue* value = debugValue(row);
  if (value == nullptr) {
    return {};
  }
  const ShownValue shown = shownValue(value->value);
  switch (role) {
    case Qt::DisplayRole:
      return shown.text;
    case Qt::ToolTipRole:
      return shown.whole;
    case kValueKindRole:
      return static_cast<int>(shown.kind);
    default:
      return {};
  }
}

QVariant VariablesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const InputVariable& variable = at(index.row());
  if (role == kFaultRole) {
    return fault(index.row());
  }
  const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
  switch (index.column()) {
    case kAlias:
      return isText || role == Qt::ToolTipRole ? QVariant(variable.name()) : QVariant();
    case kColumn:
      if (role == kChoicesRole) {
        return inputColumnNames();
      }
      if (role == kOpenChoicesRole) {
        return true;
      }
      return isText                    ? columnText(variable)
             : role == Qt::ToolTipRole ? QVariant(columnToolTip(variable))
                                       : QVariant();
    case kType:
      return role == kChoicesRole ? QVariant(variableTypeNames())
             : isText             ? QVariant(typeNameOf(variable))
                                  : QVariant();
    case kSample:
      return isText || role == Qt::ToolTipRole ? QVariant(sampleText(variable)) : QVariant();
    default:
      return debugData(index.row(), role);
  }
}

bool VariablesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const bool isKnown = checkIndex(index, CheckIndexOption::IndexIsValid);
  const QString text = value.toString();
  if (!isKnown || role != Qt::EditRole || text == data(index, Qt::EditRole).toString()) {
    return false;
  }
  InputVariable& variable = m_variables[static_cast<std::size_t>(index.row())];
  const QString name = variable.name();
  if (!setCell(variable, index.column(), text)) {
    return false;
  }
  reportRenaming(name, variable.name());
  reportEdit();
  return true;
}

bool VariablesModel::setCell(InputVariable& variable, int column, const QString& text) {
  switch (column) {
    case kAlias:
      variable.label = text.trimmed() == columnText(variable) ? QString() : text.trimmed();
      return true;
    case kColumn:
      setColumn(variable, text);
      return true;
    case kType: {
      const auto kind = variableTypeNames().indexOf(text);
      if (kind >= 0) {
        setType(variable, static_cast<VariableKind>(kind));
      }
      return kind >= 0;
    }
    case kSample:
      return setSample(variable, text);
    default:
      return false;
  }
}

void VariablesModel::reportRenaming(const QString& from, const QString& to) {
  const auto users = std::count_if(m_variables.begin(), m_variables.end(),
                                   [&](const auto& variable) { return variable.name() == to; });
  if (from != to && isVariableName(from) && isVariableName(to) && !hasAlias(from) && users == 1) {
    emit renamed(from, to);
  }
}

QVariant VariablesModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  const QStringList names{tr("Alias"), tr("Column"), tr("Type"), tr("Sample"),
                          tr("Value (debug):")};
  const QStringList meanings{
      tr("The name in expressions"), tr("The column of the input that it is read from"),
      tr("How expressions see it"),
      tr("The value with which the expression is checked where there are no rows"),
      tr("The value in the row that the step debugger shows")};
  const bool isKnown = section >= 0 && section < kColumnCount;
  return !isKnown                  ? QVariant()
         : role == Qt::DisplayRole ? QVariant(names[section])
         : role == Qt::ToolTipRole ? QVariant(meanings[section])
                                   : QVariant();
}

Qt::ItemFlags VariablesModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (!index.isValid()) {
    return flags | Qt::ItemIsDropEnabled;  // between the rows
  }
  return flags | Qt::ItemIsDragEnabled |
         (index.column() == kDebugValue ? Qt::NoItemFlags : Qt::ItemIsEditable);
}

void VariablesModel::moveRow(int row, int before) {
  if (before == row || before == row + 1) {
    return;
  }
  beginMoveRows({}, row, row, {}, before);
  const auto begin = m_variables.begin();
  if (before < row) {
    std::rotate(begin + before, begin + row, begin + row + 1);
  } else {
    std::rotate(begin + row, begin + row + 1, begin + before);
  }
  endMoveRows();
}

void VariablesModel::moveTo(const std::vector<int>& rows, int before) {
  int above = before;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    if (*row < before) {
      moveRow(*row, above--);
    }
  }
  int below = before;
  for (const int row : rows) {
    if (row >= before) {
      moveRow(row, below++);
    }
  }
  reportEdit();
}

QStringList VariablesModel::mimeTypes() const {
  return {kRowsFormat, kVariableNamesFormat, QStringLiteral("text/plain")};
}

QMimeData* VariablesModel::mimeData(const QModelIndexList& indexes) const {
  std::set<int> rows;
  for (const QModelIndex& index : indexes) {
    rows.insert(index.row());
  }
  QStringList names;
  QByteArray numbers = QByteArray::number(reinterpret_cast<quintptr>(this));
  for (const int row : rows) {
    names += at(row).name();
    numbers += ' ' + QByteArray::number(row);
  }
  auto data = std::make_unique<QMimeData>();
  data->setData(kRowsFormat, numbers);
  data->setData(kVariableNamesFormat, names.join(u'\n').toUtf8());
  data->setText(names.join(u' '));
  return data.release();
}

std::vector<int> VariablesModel::draggedRows(const QMimeData* data) const {
  QList<QByteArray> numbers = data->data(kRowsFormat).split(' ');
  if (numbers.takeFirst() != QByteArray::number(reinterpret_cast<quintptr>(this))) {
    return {};
  }
  std::vector<int> rows;
  for (const QByteArray& number : numbers) {
    rows.push_back(number.toInt());
  }
  return rows;
}

bool VariablesModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int,
                                     const QModelIndex&) const {
  const std::vector<int> rows = draggedRows(data);
  return !rows.empty() && rows.back() < rowCount();
}

// On a row counts as in front of it.
bool VariablesModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                  const QModelIndex& parent) {
  if (!canDropMimeData(data, action, row, column, parent)) {
    return false;
  }
  const int before = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
  moveTo(draggedRows(data), before);
  return true;
}

}  // namespace kelvarin
