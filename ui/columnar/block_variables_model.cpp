#include "ui/columnar/block_variables_model.h"

#include <algorithm>

#include "host/contract/one_row.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

namespace {

using Model = BlockVariablesModel;

// In the order of the choices.
enum Kind { kNumber, kText, kDate };

Kind kindOfVariable(const BlockVariable& variable) {
  if (variable.meta == MetaTypeColumn::date) {
    return kDate;
  }
  return variable.isNumber ? kNumber : kText;
}

QString sampleText(const BlockVariable& variable, const BlockVariable::Sample& sample) {
  return variable.isNumber ? shortestText(sample.number) : sample.text;
}

// A text that is no number leaves the sample as it is.
bool setSample(const BlockVariable& variable, BlockVariable::Sample& sample, const QString& text) {
  if (!variable.isNumber) {
    sample.text = text;
    return true;
  }
  bool isNumber = false;
  const double number = text.toDouble(&isNumber);
  if (isNumber) {
    sample.number = number;
  }
  return isNumber;
}

void setKind(BlockVariable& variable, Kind kind) {
  variable.isNumber = kind == kNumber;
  variable.meta = kind == kDate ? MetaTypeColumn::date : MetaTypeColumn::text;
}

}  // namespace

// Committing a cell loads what was committed and forgets the file, while the view still holds
// indexes of the model: a reset is left to what adds or removes variables.
void Model::setVariables(const std::vector<BlockVariable>& variables) {
  if (variables.size() == m_variables.size()) {
    m_variables = variables;
    noteAllChanged();
    return;
  }
  beginResetModel();
  m_variables = variables;
  endResetModel();
}

void Model::setFile(const TableSummary* summary) {
  m_file = summary == nullptr ? std::nullopt : std::optional(summary->columns);
  noteAllChanged();
}

void Model::noteAllChanged() {
  if (!m_variables.empty()) {
    emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
  }
}

const TableSummary::Column* Model::columnOfFile(const QString& name) const {
  if (!m_file) {
    return nullptr;
  }
  const auto found = std::ranges::find(*m_file, name, &TableSummary::Column::name);
  return found == m_file->end() ? nullptr : &*found;
}

BlockVariable Model::variableOf(const QString& column) const {
  BlockVariable variable(column);
  const TableSummary::Column* inFile = columnOfFile(column);
  if (inFile != nullptr && inFile->type == GelType::text) {
    setKind(variable, kText);
  }
  return variable;
}

std::vector<InputVariable> Model::offeredInputs() const {
  BlockFilter offered;
  offered.addRowNumbers = false;
  for (const TableSummary::Column& column : m_file.value_or(std::vector<TableSummary::Column>{})) {
    if (std::ranges::find(m_variables, column.name, &BlockVariable::column) == m_variables.end()) {
      offered.variables.push_back(variableOf(column.name));
    }
  }
  return inputsOf(offered);
}

int Model::add(const QString& column) {
  const int row = rowCount();
  beginInsertRows({}, row, row);
  m_variables.push_back(variableOf(column));
  endInsertRows();
  emit edited();
  return row;
}

bool Model::addOffered(const QString& inputName) {
  for (const TableSummary::Column& column : m_file.value_or(std::vector<TableSummary::Column>{})) {
    const BlockVariable variable(column.name);
    if (inputName == variable.maximumName || inputName == variable.minimumName ||
        inputName == variable.hasNullName) {
      add(column.name);
      return true;
    }
  }
  return false;
}

void Model::remove(const std::vector<int>& rows) {
  if (rows.empty()) {
    return;
  }
  std::vector<int> fromLast = rows;
  std::ranges::sort(fromLast, std::greater<>());
  for (const int row : fromLast) {
    beginRemoveRows({}, row, row);
    m_variables.erase(m_variables.begin() + row);
    endRemoveRows();
  }
  emit edited();
}

bool Model::move(int row, int step) {
  const int target = row + step;
  if (row < 0 || target < 0 || target >= rowCount()) {
    return false;
  }
  beginMoveRows({}, row, row, {}, step > 0 ? target + 1 : target);
  std::swap(m_variables[static_cast<std::size_t>(row)],
            m_variables[static_cast<std::size_t>(target)]);
  endMoveRows();
  emit edited();
  return true;
}

int Model::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_variables.size());
}

int Model::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

// lupdate finds no texts behind the short name of the class.
QStringList BlockVariablesModel::choicesOf(int column) const {
  if (column == kKind) {
    return {tr("Number"), tr("Text"), tr("Date")};
  }
  QStringList names;
  if (column == kName && m_file) {
    for (const TableSummary::Column& inFile : *m_file) {
      names += inFile.name;
    }
  }
  return names;
}

QVariant Model::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const BlockVariable& variable = m_variables[static_cast<std::size_t>(index.row())];
  if (role == kChoicesRole) {
    const QStringList choices = choicesOf(index.column());
    return choices.isEmpty() ? QVariant() : choices;
  }
  if (role == kOpenChoicesRole) {
    return index.column() == kName;
  }
  if (role == kFaultRole || role == Qt::ToolTipRole) {
    return index.column() == kName ? faultOf(variable) : QString();
  }
  if (role != Qt::DisplayRole && role != Qt::EditRole) {
    return {};
  }
  switch (index.column()) {
    case kName:
      return variable.column;
    case kKind:
      return choicesOf(kKind).at(kindOfVariable(variable));
    case kMaximum:
      return variable.maximumName;
    case kMinimum:
      return variable.minimumName;
    case kHasNull:
      return variable.hasNullName;
    case kMaximumSample:
      return sampleText(variable, variable.maximum);
    default:
      return sampleText(variable, variable.minimum);
  }
}

QString BlockVariablesModel::faultOf(const BlockVariable& variable) const {
  if (!m_file || variable.column.contains(QStringLiteral("${"))) {
    return {};
  }
  const TableSummary::Column* column = columnOfFile(variable.column);
  if (column == nullptr) {
    return tr("The file has no column '%1'.").arg(variable.column);
  }
  return column->type == GelType::text && kindOfVariable(variable) == kNumber
             ? tr("The column '%1' holds texts: choose Text, or Date.").arg(variable.column)
             : QString();
}

bool Model::setData(const QModelIndex& index, const QVariant& value, int role) {
  const QString text = value.toString();
  if (role != Qt::EditRole || text == data(index, Qt::EditRole).toString()) {
    return false;
  }
  BlockVariable& variable = m_variables[static_cast<std::size_t>(index.row())];
  switch (index.column()) {
    case kName: {
      // Names that were the column's follow it.
      const BlockVariable before(variable.column);
      const BlockVariable after(text);
      for (QString BlockVariable::* name :
           {&BlockVariable::maximumName, &BlockVariable::minimumName,
            &BlockVariable::hasNullName}) {
        if (variable.*name == before.*name) {
          variable.*name = after.*name;
        }
      }
      variable.column = text;
      break;
    }
    case kKind:
      setKind(variable, static_cast<Kind>(std::max<qsizetype>(0, choicesOf(kKind).indexOf(text))));
      break;
    case kMaximum:
      variable.maximumName = text;
      break;
    case kMinimum:
      variable.minimumName = text;
      break;
    case kHasNull:
      variable.hasNullName = text;
      break;
    case kMaximumSample:
    case kMinimumSample: {
      auto& sample = index.column() == kMaximumSample ? variable.maximum : variable.minimum;
      if (!setSample(variable, sample, text)) {
        return false;
      }
      break;
    }
    default:
      return false;
  }
  emit dataChanged(this->index(index.row(), 0), this->index(index.row(), kColumnCount - 1));
  emit edited();
  return true;
}

Qt::ItemFlags Model::flags(const QModelIndex&) const {
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

QVariant BlockVariablesModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  const bool isToolTip = role == Qt::ToolTipRole;
  if (role != Qt::DisplayRole && !isToolTip) {
    return {};
  }
  switch (section) {
    case kName:
      return isToolTip ? tr("The column; it need not be among those that are read.") : tr("Column");
    case kKind:
      return isToolTip ? tr("What the expression gets: dates enter as elapsed times.") : tr("Type");
    case kMaximum:
      return isToolTip ? tr("Name of the largest value of a block.") : tr("Largest");
    case kMinimum:
      return isToolTip ? tr("Name of the smallest value of a block.") : tr("Smallest");
    case kHasNull:
      return isToolTip ? tr("Name for 1 where a block has nulls, else 0.") : tr("Has nulls");
    case kMaximumSample:
      return isToolTip ? tr("The largest value with which a check evaluates.")
                       : tr("Sample largest");
    default:
      return isToolTip ? tr("The smallest value with which a check evaluates.")
                       : tr("Sample smallest");
  }
}

}  // namespace kelvarin
