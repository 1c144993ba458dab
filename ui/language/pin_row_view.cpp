#include "ui/language/pin_row_view.h"

namespace kelvarin {

namespace {

PinOutMetaData metaDataOf(const PinColumns& columns) {
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const PinColumns::Column& column : columns.columns) {
    names.append(column.name);
    metas.append(MetaInfo(column.meta, 0));
  }
  PinOutMetaData metaData;
  metaData.setColumnCount(static_cast<int>(names.size()));
  metaData.setNames(names);
  metaData.setMetas(metas);
  return metaData;
}

}  // namespace

PinRowView::PinRowView(const PinColumns& columns)
    : m_metaData(metaDataOf(columns)), m_row(&m_metaData) {}

const OneRow& PinRowView::show(const PinRows& rows, std::size_t row) {
  unsigned char** values = m_row.getAllColForWrite();
  for (std::size_t i = 0; i < rows.columnCount(); ++i) {
    values[i] = const_cast<unsigned char*>(rows.value(row, i));
  }
  return m_row;
}

}  // namespace kelvarin
