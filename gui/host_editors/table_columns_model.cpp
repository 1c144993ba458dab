#include "gui/host_editors/table_columns_model.h"

#include <algorithm>

#include <QBrush>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr std::size_t kShownValues = 5;

QString firstValues(const TableLook& look, std::size_t column) {
  QStringList values;
  for (std::size_t row = 0; row < std::min(kShownValues, look.rows.size()); ++row) {
    values += look.rows[row][column].text;
  }
  return values.join(QStringLiteral(", "));
}

}  // namespace

QString TableColumnsModel::typeInWords(const QString& meta) {
  if (meta == u"F") {
    return tr("Number");
  }
  if (meta == u"K") {
    return tr("Key");
  }
  return meta == u"U" ? tr("Text") : meta;
}

void TableColumnsModel::setColumns(const TableLook& look,
                                   const std::vector<ColumnElement>& declared, bool canBeRenamed) {
  beginResetModel();
  m_canBeRenamed = canBeRenamed;
  m_rows.clear();
  QHash<QString, QString> metas;
  for (const ColumnElement& element : declared) {
    metas.insert(element.name, element.meta);
  }
  for (std::size_t i = 0; i < look.columns.size(); ++i) {
    const TableLook::Column& column = look.columns[i];
    m_rows.push_back(
        {column.name, metas.take(column.name), metaCode(column.found), firstValues(look, i), true});
  }
  for (const ColumnElement& element : declared) {
    if (metas.contains(element.name)) {
      m_rows.push_back({element.name, element.meta, {}, {}, look.columns.empty()});
    }
  }
  endResetModel();
}

int TableColumnsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TableColumnsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QString TableColumnsModel::typeText(const Row& row) const {
  return row.meta.isEmpty() ? tr("%1 (found)").arg(typeInWords(row.found)) : typeInWords(row.meta);
}

QVariant TableColumnsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const Row& row = m_rows[static_cast<std::size_t>(index.row())];
  if (role == kMetaRole) {
    return row.meta;
  }
  if (role == kFoundRole) {
    return typeInWords(row.found);
  }
  if (role == Qt::DecorationRole && index.column() == kName && !row.isInFile) {
    return icon(Severity::warning);
  }
  if (role == Qt::ToolTipRole && !row.isInFile) {
    return tr("The file has no column of this name.");
  }
  const bool isText = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
  if (!isText) {
    return {};
  }
  switch (index.column()) {
    case kName:
      return row.name;
    case kType:
      return typeText(row);
    default:
      return row.values;
  }
}

bool TableColumnsModel::setData(const QModelIndex& index, const QVariant& value, int) {
  const Row row = m_rows[static_cast<std::size_t>(index.row())];
  const QString text = value.toString();
  if (index.column() == kType && text != row.meta) {
    emit typeChosen(row.name, text);
    return true;
  }
  if (index.column() == kName && !text.isEmpty() && text != row.name) {
    emit renamed(index.row(), text);
    return true;
  }
  return false;
}

Qt::ItemFlags TableColumnsModel::flags(const QModelIndex& index) const {
  const Row& row = m_rows[static_cast<std::size_t>(index.row())];
  const bool isEditable =
      index.column() == kType || (index.column() == kName && m_canBeRenamed && row.isInFile);
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return isEditable ? flags | Qt::ItemIsEditable : flags;
}

QVariant TableColumnsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) {
    return {};
  }
  if (orientation == Qt::Vertical) {
    return section;
  }
  switch (section) {
    case kName:
      return tr("Column");
    case kType:
      return tr("Type");
    default:
      return tr("First values");
  }
}

}  // namespace kelvarin
