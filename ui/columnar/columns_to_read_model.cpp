#include "ui/columnar/columns_to_read_model.h"

#include <algorithm>

#include "ui/columnar/summary_texts.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

void ColumnsToReadModel::setListed(const QStringList& names) {
  if (names == listed()) {
    return;
  }
  beginResetModel();
  std::vector<Row> rows;
  for (const QString& name : names) {
    const int known = rowOf(name);
    Row row = known < 0 ? Row{.name = name, .column = {}} : m_rows[static_cast<std::size_t>(known)];
    row.isTicked = true;
    rows.push_back(std::move(row));
  }
  for (const Row& row : m_rows) {
    if (row.isInFile && !names.contains(row.name)) {
      rows.push_back(row);
      rows.back().isTicked = false;
    }
  }
  m_rows = std::move(rows);
  endResetModel();
}

QStringList ColumnsToReadModel::listed() const {
  QStringList names;
  for (const Row& row : m_rows) {
    if (row.isTicked) {
      names += row.name;
    }
  }
  return names;
}

void ColumnsToReadModel::setFile(const TableSummary* summary) {
  beginResetModel();
  m_isFileKnown = summary != nullptr;
  m_areSizesKnown = summary != nullptr && summary->missingSideFile.isEmpty();
  for (Row& row : m_rows) {
    row.isInFile = false;
  }
  const std::vector<TableSummary::Column> none;
  for (const TableSummary::Column& column : summary == nullptr ? none : summary->columns) {
    const int known = rowOf(column.name);
    Row& row = known < 0 ? m_rows.emplace_back(Row{.name = column.name, .column = {}})
                         : m_rows[static_cast<std::size_t>(known)];
    row.isInFile = true;
    row.column = column;
  }
  std::erase_if(m_rows, [](const Row& row) { return !row.isTicked && !row.isInFile; });
  endResetModel();
}

void ColumnsToReadModel::setTickable(bool isTickable) {
  if (isTickable == m_isTickable) {
    return;
  }
  beginResetModel();
  m_isTickable = isTickable;
  endResetModel();
}

void ColumnsToReadModel::tick(const std::vector<int>& rows, bool isTicked) {
  bool isChanged = false;
  for (const int row : rows) {
    bool& ticked = m_rows[static_cast<std::size_t>(row)].isTicked;
    isChanged |= ticked != isTicked;
    ticked = isTicked;
  }
  if (!isChanged) {
    return;
  }
  emit dataChanged(index(0, kName), index(rowCount() - 1, kName), {Qt::CheckStateRole});
  emit edited();
}

bool ColumnsToReadModel::move(int row, int step) {
  const int target = row + step;
  if (row < 0 || target < 0 || target >= rowCount()) {
    return false;
  }
  beginMoveRows({}, row, row, {}, step > 0 ? target + 1 : target);
  std::swap(m_rows[static_cast<std::size_t>(row)], m_rows[static_cast<std::size_t>(target)]);
  endMoveRows();
  emit edited();
  return true;
}

int ColumnsToReadModel::add(const QString& name) {
  int row = rowOf(name);
  if (row < 0) {
    row = rowCount();
    beginInsertRows({}, row, row);
    m_rows.push_back({.name = name, .column = {}});
    endInsertRows();
  }
  tick({row}, true);
  return row;
}

std::optional<std::uint64_t> ColumnsToReadModel::tickedBytes() const {
  if (!m_areSizesKnown) {
    return std::nullopt;
  }
  std::uint64_t bytes = 0;
  for (const Row& row : m_rows) {
    bytes += row.isTicked && row.isInFile ? row.column.storedBytes : 0;
  }
  return bytes;
}

int ColumnsToReadModel::tickedCount() const {
  return static_cast<int>(std::ranges::count_if(m_rows, &Row::isTicked));
}

int ColumnsToReadModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ColumnsToReadModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant ColumnsToReadModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const Row& row = m_rows[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return textOf(row, index.column());
    case Qt::CheckStateRole:
      return index.column() == kName && m_isTickable
                 ? QVariant(row.isTicked ? Qt::Checked : Qt::Unchecked)
                 : QVariant();
    case Qt::TextAlignmentRole:
      return index.column() == kSize || index.column() == kSet
                 ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                 : QVariant();
    case kFaultRole:
      return index.column() == kName ? faultOf(row) : QString();
    case Qt::ToolTipRole:
      return faultOf(row);
    default:
      return {};
  }
}

QVariant ColumnsToReadModel::textOf(const Row& row, int column) const {
  if (column == kName) {
    return row.name;
  }
  if (!row.isInFile) {
    return {};
  }
  switch (column) {
    case kType:
      return typeText(row.column.type);
    case kSize:
      return m_areSizesKnown ? sizeText(row.column.storedBytes) : QString();
    default:
      return row.column.set;
  }
}

// A graph parameter in a name is replaced in a run.
QString ColumnsToReadModel::faultOf(const Row& row) const {
  const bool isMissing = m_isFileKnown && !row.isInFile && !row.name.contains(QStringLiteral("${"));
  return isMissing ? tr("The file has no column '%1'.").arg(row.name) : QString();
}

int ColumnsToReadModel::rowOf(const QString& name) const {
  const auto found = std::ranges::find(m_rows, name, &Row::name);
  return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

bool ColumnsToReadModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || index.column() != kName || !m_isTickable) {
    return false;
  }
  tick({index.row()}, value.toInt() == Qt::Checked);
  return true;
}

Qt::ItemFlags ColumnsToReadModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (index.column() == kName && m_isTickable) {
    flags |= Qt::ItemIsUserCheckable;
  }
  return flags;
}

QVariant ColumnsToReadModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
    return section == kSize || section == kSet ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                               : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  }
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case kName:
      return tr("Column");
    case kType:
      return tr("Type");
    case kSize:
      return tr("Stored");
    default:
      return tr("Set");
  }
}

}  // namespace kelvarin
