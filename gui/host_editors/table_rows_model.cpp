#include "gui/host_editors/table_rows_model.h"

#include <utility>

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include "gui/host_editors/table_columns_model.h"

namespace kelvarin {

void TableRowsModel::setLook(TableLook look) {
  beginResetModel();
  m_look = std::move(look);
  endResetModel();
}

int TableRowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_look.rows.size());
}

int TableRowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_look.columns.size());
}

QVariant TableRowsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const auto column = static_cast<std::size_t>(index.column());
  const ShownValue& value = m_look.rows[static_cast<std::size_t>(index.row())][column];
  switch (role) {
    case Qt::DisplayRole:
      return value.text;
    case Qt::ToolTipRole:
      return value.isMarked() ? value.text : value.whole;
    case Qt::TextAlignmentRole: {
      const bool isText = m_look.columns[column].type == MetaTypeColumn::text;
      return static_cast<int>(Qt::AlignVCenter | (isText ? Qt::AlignLeft : Qt::AlignRight));
    }
    case Qt::ForegroundRole:
      return value.isMarked() ? QVariant(QGuiApplication::palette().placeholderText()) : QVariant();
    case Qt::FontRole: {
      QFont font;
      font.setItalic(true);
      return value.isMarked() ? QVariant(font) : QVariant();
    }
    default:
      return {};
  }
}

QVariant TableRowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    return role == Qt::DisplayRole ? QVariant(section) : QVariant();
  }
  const TableLook::Column& column = m_look.columns[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) {
    return column.name;
  }
  return role == Qt::ToolTipRole ? QVariant(TableColumnsModel::typeInWords(metaCode(column.type)))
                                 : QVariant();
}

}  // namespace kelvarin
