#include "ui/columnar/column_sets_model.h"

#include <algorithm>

#include "ui/columnar/summary_texts.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

namespace {

GelType storedType(MetaTypeColumn meta) {
  switch (meta) {
    case MetaTypeColumn::number:
      return GelType::number;
    case MetaTypeColumn::key:
      return GelType::key;
    default:
      return GelType::text;
  }
}

}  // namespace

void ColumnSetsModel::setSets(const ListedColumnSets& sets) {
  if (sets == m_sets) {
    return;
  }
  beginResetModel();
  m_sets = sets;
  listRows();
  endResetModel();
}

void ColumnSetsModel::setInput(const PinColumns& columns) {
  beginResetModel();
  m_input = columns;
  listRows();
  endResetModel();
}

void ColumnSetsModel::listRows() {
  m_rows.clear();
  for (const PinColumns::Column& column : m_input.columns) {
    m_rows.push_back({column.name, &column});
  }
  for (const auto& [name, set] : m_sets) {
    if (std::ranges::find(m_rows, name, &Row::name) == m_rows.end()) {
      m_rows.push_back({name, nullptr});
    }
  }
}

// A column that is listed twice has its last set.
int ColumnSetsModel::setOf(const QString& name) const {
  const auto found = std::find_if(m_sets.rbegin(), m_sets.rend(),
                                  [&](const auto& line) { return line.first == name; });
  return found == m_sets.rend() ? kNotWritten : found->second;
}

void ColumnSetsModel::put(const QString& name, int set) {
  if (set < 0) {
    std::erase_if(m_sets, [&](const auto& line) { return line.first == name; });
    return;
  }
  bool isListed = false;
  for (auto& [column, number] : m_sets) {
    if (column == name) {
      number = set;
      isListed = true;
    }
  }
  if (!isListed) {
    m_sets.emplace_back(name, set);
  }
}

void ColumnSetsModel::assign(const std::vector<int>& rows, int set) {
  const ListedColumnSets before = m_sets;
  for (const int row : rows) {
    put(m_rows[static_cast<std::size_t>(row)].name, set);
  }
  if (m_sets == before) {
    return;
  }
  emit dataChanged(index(0, kSet), index(rowCount() - 1, kSet));
  emit edited();
}

int ColumnSetsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ColumnSetsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant ColumnSetsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const Row& row = m_rows[static_cast<std::size_t>(index.row())];
  const int set = setOf(row.name);
  if (role == kFaultRole || role == Qt::ToolTipRole) {
    return index.column() == kName && m_input.isKnown && row.input == nullptr
               ? tr("The column '%1' does not reach this action.").arg(row.name)
               : QString();
  }
  if (role == Qt::EditRole && index.column() == kSet) {
    return set;
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  switch (index.column()) {
    case kName:
      return row.name;
    case kType:
      return row.input == nullptr ? QString() : typeText(storedType(row.input->meta));
    default:
      return set < 0 ? tr("not written") : QString::number(set);
  }
}

bool ColumnSetsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  bool isNumber = false;
  const int set = value.toInt(&isNumber);
  if (role != Qt::EditRole || index.column() != kSet || !isNumber || set > kLastSet) {
    return false;
  }
  assign({index.row()}, std::max(set, kNotWritten));
  return true;
}

Qt::ItemFlags ColumnSetsModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return index.column() == kSet ? flags | Qt::ItemIsEditable : flags;
}

QVariant ColumnSetsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case kName:
      return tr("Column");
    case kType:
      return tr("Type");
    default:
      return tr("Set");
  }
}

}  // namespace kelvarin
