#include "gui/host_editors/inline_table_model.h"

#include <algorithm>

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include "gui/host_editors/pasted_table.h"
#include "gui/host_editors/table_columns_model.h"
#include "host/contract/shown_value.h"
#include "host/tables/inline/inline_table.h"
#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

template <typename Item>
void moveItem(std::vector<Item>& items, std::size_t from, std::size_t to) {
  Item item = std::move(items[from]);
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(from));
  items.insert(items.begin() + static_cast<std::ptrdiff_t>(to), std::move(item));
}

template <typename Item>
auto at(std::vector<Item>& items, int index) {
  return items.begin() + index;
}

}  // namespace

void InlineTableModel::setContent(InlineContent content) {
  beginResetModel();
  m_content = std::move(content);
  endResetModel();
}

int InlineTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_content.rows.size());
}

int InlineTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_content.columns.size());
}

QString InlineTableModel::value(const QModelIndex& index) const {
  const InlineContent::Row& row = m_content.rows[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<std::size_t>(index.column());
  return column < row.size() ? row[column] : QString();
}

void InlineTableModel::setValue(std::size_t row, std::size_t column, const QString& value) {
  InlineContent::Row& values = m_content.rows[row];
  if (column >= values.size()) {
    values.resize(column + 1);
  }
  values[column] = value;
}

QVariant InlineTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const QString text = value(index);
  const InlineContent::Column& column = m_content.columns[static_cast<std::size_t>(index.column())];
  const MetaTypeColumn type = typeOf(column);
  const bool isNull = text.isNull() || (type != MetaTypeColumn::text && text.trimmed().isEmpty());
  const ShownValue shown = isNull ? shownNull() : shownText(text);
  switch (role) {
    case Qt::EditRole:
      return text;
    case Qt::DisplayRole:
      return shown.text;
    case Qt::ToolTipRole: {
      const QString fault = inlineValueFault(column.name, type, text);
      return fault.isEmpty() ? shown.whole : fault;
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignVCenter |
                              (type == MetaTypeColumn::text ? Qt::AlignLeft : Qt::AlignRight));
    case Qt::ForegroundRole: {
      const QPalette palette = QGuiApplication::palette();
      if (shown.isMarked()) {
        return palette.placeholderText();
      }
      return inlineValueFault(column.name, type, text).isEmpty()
                 ? QVariant()
                 : QVariant(severityColor(Severity::error, palette));
    }
    case Qt::FontRole: {
      QFont font;
      font.setItalic(shown.isMarked());
      font.setUnderline(!isNull && !inlineValueFault(column.name, type, text).isEmpty());
      return font;
    }
    default:
      return {};
  }
}

bool InlineTableModel::setData(const QModelIndex& index, const QVariant& given, int role) {
  const QString text = given.toString().isNull() ? QStringLiteral("") : given.toString();
  const QString before = value(index);
  // A null that was opened and closed again stays one.
  const bool isSame = text == before && (!before.isNull() || text.isEmpty());
  if (role != Qt::EditRole || isSame) {
    return false;
  }
  setValue(static_cast<std::size_t>(index.row()), static_cast<std::size_t>(index.column()), text);
  emit dataChanged(index, index);
  emit edited();
  return true;
}

Qt::ItemFlags InlineTableModel::flags(const QModelIndex& index) const {
  return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

QVariant InlineTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
    return {};
  }
  if (orientation == Qt::Vertical) {
    return section;
  }
  const InlineContent::Column& column = m_content.columns[static_cast<std::size_t>(section)];
  const QString type =
      TableColumnsModel::typeInWords(column.meta.isEmpty() ? QStringLiteral("U") : column.meta);
  return role == Qt::DisplayRole ? QStringLiteral("%1\n%2").arg(column.name, type)
                                 : tr("Column %1, type %2").arg(column.name, type);
}

void InlineTableModel::setNull(const QModelIndexList& cells) {
  for (const QModelIndex& cell : cells) {
    setValue(static_cast<std::size_t>(cell.row()), static_cast<std::size_t>(cell.column()), {});
    emit dataChanged(cell, cell);
  }
  if (!cells.isEmpty()) {
    emit edited();
  }
}

void InlineTableModel::addRow(int before) {
  beginInsertRows({}, before, before);
  m_content.rows.insert(at(m_content.rows, before), InlineContent::Row(m_content.columns.size()));
  endInsertRows();
  emit edited();
}

void InlineTableModel::removeRowsAt(std::vector<int> rows) {
  std::ranges::sort(rows, std::greater<>());
  for (const int row : rows) {
    beginRemoveRows({}, row, row);
    m_content.rows.erase(at(m_content.rows, row));
    endRemoveRows();
  }
  if (!rows.empty()) {
    emit edited();
  }
}

void InlineTableModel::moveRowTo(int row, int target) {
  beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
  moveItem(m_content.rows, static_cast<std::size_t>(row), static_cast<std::size_t>(target));
  endMoveRows();
  emit edited();
}

QString InlineTableModel::newColumnName() const {
  for (std::size_t number = m_content.columns.size() + 1;; ++number) {
    const QString name = QStringLiteral("col%1").arg(number);
    if (std::ranges::find(m_content.columns, name, &InlineContent::Column::name) ==
        m_content.columns.end()) {
      return name;
    }
  }
}

void InlineTableModel::addColumn(int before) {
  beginInsertColumns({}, before, before);
  m_content.columns.insert(at(m_content.columns, before), {newColumnName(), QString()});
  for (InlineContent::Row& row : m_content.rows) {
    if (static_cast<int>(row.size()) >= before) {
      row.insert(at(row, before), QString());
    }
  }
  endInsertColumns();
  emit edited();
}

void InlineTableModel::removeColumnAt(int column) {
  beginRemoveColumns({}, column, column);
  m_content.columns.erase(at(m_content.columns, column));
  for (InlineContent::Row& row : m_content.rows) {
    if (static_cast<int>(row.size()) > column) {
      row.erase(at(row, column));
    }
  }
  endRemoveColumns();
  emit edited();
}

void InlineTableModel::moveColumnTo(int column, int target) {
  beginMoveColumns({}, column, column, {}, target > column ? target + 1 : target);
  const auto from = static_cast<std::size_t>(column);
  const auto to = static_cast<std::size_t>(target);
  moveItem(m_content.columns, from, to);
  for (InlineContent::Row& row : m_content.rows) {
    row.resize(std::max(row.size(), std::max(from, to) + 1));
    moveItem(row, from, to);
  }
  endMoveColumns();
  emit edited();
}

void InlineTableModel::renameColumn(int column, const QString& name) {
  m_content.columns[static_cast<std::size_t>(column)].name = name;
  emit headerDataChanged(Qt::Horizontal, column, column);
  emit edited();
}

void InlineTableModel::setColumnType(int column, const QString& meta) {
  m_content.columns[static_cast<std::size_t>(column)].meta = meta;
  emit headerDataChanged(Qt::Horizontal, column, column);
  if (rowCount() > 0) {
    emit dataChanged(index(0, column), index(rowCount() - 1, column));
  }
  emit edited();
}

bool InlineTableModel::holdsNumbers(std::size_t column) const {
  const auto isText = [&](const InlineContent::Row& row) {
    return column < row.size() &&
           !inlineValueFault({}, MetaTypeColumn::number, row[column]).isEmpty();
  };
  const auto hasValue = [&](const InlineContent::Row& row) {
    return column < row.size() && !row[column].isEmpty();
  };
  return std::ranges::none_of(m_content.rows, isText) &&
         std::ranges::any_of(m_content.rows, hasValue);
}

InlineTableModel::Paste InlineTableModel::paste(const QString& text, int row, int column) {
  std::vector<std::vector<QString>> cells = pastedCells(text);
  Paste result;
  if (cells.empty()) {
    return result;
  }
  beginResetModel();
  const std::size_t firstNew = m_content.columns.size();
  std::vector<QString> names;
  if (m_content.columns.empty() && beginsWithNames(cells)) {
    names = cells.front();
    cells.erase(cells.begin());
    result.tookNames = true;
  }
  const auto firstRow = static_cast<std::size_t>(row);
  const auto firstColumn = static_cast<std::size_t>(column);
  std::size_t width = names.size();
  for (const std::vector<QString>& cellsOfRow : cells) {
    width = std::max(width, cellsOfRow.size());
  }
  for (std::size_t i = m_content.columns.size(); i < firstColumn + width; ++i) {
    m_content.columns.push_back({i < names.size() ? names[i] : newColumnName(), QString()});
  }
  const std::size_t oldRows = m_content.rows.size();
  m_content.rows.resize(std::max(oldRows, firstRow + cells.size()));
  for (std::size_t i = 0; i < m_content.rows.size(); ++i) {
    const bool isAsLongAsItWas = m_content.rows[i].size() >= firstNew || i >= oldRows;
    if (isAsLongAsItWas && m_content.rows[i].size() < m_content.columns.size()) {
      m_content.rows[i].resize(m_content.columns.size());
    }
  }
  for (std::size_t i = 0; i < cells.size(); ++i) {
    for (std::size_t j = 0; j < cells[i].size(); ++j) {
      setValue(firstRow + i, firstColumn + j, cells[i][j]);
    }
  }
  for (std::size_t i = firstNew; i < m_content.columns.size(); ++i) {
    m_content.columns[i].meta = holdsNumbers(i) ? QStringLiteral("F") : QString();
  }
  endResetModel();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    for (std::size_t j = 0; j < cells[i].size(); ++j) {
      if (!withDecimalPoint(cells[i][j]).isNull()) {
        result.withDecimalCommas.append(
            index(row + static_cast<int>(i), column + static_cast<int>(j)));
      }
    }
  }
  emit edited();
  return result;
}

void InlineTableModel::makeNamesARow() {
  beginResetModel();
  InlineContent::Row names;
  for (std::size_t i = 0; i < m_content.columns.size(); ++i) {
    InlineContent::Column& column = m_content.columns[i];
    names.push_back(column.name);
    column = {QStringLiteral("col%1").arg(i + 1), QString()};
  }
  m_content.rows.insert(m_content.rows.begin(), std::move(names));
  endResetModel();
  emit edited();
}

void InlineTableModel::useDecimalPoints(const QModelIndexList& cells) {
  std::vector<bool> isTouched(m_content.columns.size());
  beginResetModel();
  for (const QModelIndex& cell : cells) {
    const QString number = withDecimalPoint(value(cell));
    if (!number.isNull()) {
      const auto column = static_cast<std::size_t>(cell.column());
      setValue(static_cast<std::size_t>(cell.row()), column, number);
      isTouched[column] = true;
    }
  }
  for (std::size_t column = 0; column < isTouched.size(); ++column) {
    if (isTouched[column] && holdsNumbers(column)) {
      m_content.columns[column].meta = QStringLiteral("F");
    }
  }
  endResetModel();
  emit edited();
}

QString InlineTableModel::copied(const QModelIndexList& cells) const {
  if (cells.isEmpty()) {
    return {};
  }
  const auto [top, bottom] = std::ranges::minmax(cells, {}, &QModelIndex::row);
  const auto [left, right] = std::ranges::minmax(cells, {}, &QModelIndex::column);
  std::vector<std::vector<QString>> texts;
  for (int row = top.row(); row <= bottom.row(); ++row) {
    std::vector<QString>& line = texts.emplace_back();
    for (int column = left.column(); column <= right.column(); ++column) {
      line.push_back(value(index(row, column)));
    }
  }
  return copiedCells(texts);
}

}  // namespace kelvarin
