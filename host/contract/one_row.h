// One row of one pin: a pointer to the bytes of each column's value, and the columns' names, types
// and sort order.
//
// The bytes are those of column_bytes.h. They belong to whoever made them (a source's batch, an
// action's RowBuffer or result array) and stay valid until that action is called for its next row.
// A copied OneRow is a view: it shares the pointers and owns nothing. copyFrom() makes an
// independent row. Threads: one at a time.
#pragma once

#include <cstdint>
#include <string_view>

#include <QString>
#include <QVector>

#include "base/export.h"
#include "host/contract/column_bytes.h"
#include "host/contract/pin_out_meta_data.h"
#include "host/contract/row_buffer.h"

class KELVARIN_CORE OneRow {
 public:
  // A row with the columns of `metaData`, which it refers to and does not own; every value is
  // missing.
  explicit OneRow(PinOutMetaData* metaData);
  OneRow(const OneRow& other)
      : m_metaData(other.m_metaData),
        m_values(nullptr),
        m_columns(other.m_columns),
        m_ownColumns(nullptr),
        m_columnCount(other.m_columnCount) {}
  OneRow& operator=(const OneRow&) = delete;
  ~OneRow();

  // Columns, metadata and values of `other`; the values' bytes are copied.
  void copyFrom(const OneRow* other);
  // The values of `other` without copying; both rows have the same columns.
  void showValuesOf(const OneRow* other) { m_columns = other->m_columns; }

  int sz() const { return static_cast<int>(m_columnCount); }
  void setNumberOfColumns(int count);

  unsigned char* const* getAllColForRead() const { return m_columns; }
  // The row's own array; ends a showValuesOf().
  unsigned char** getAllColForWrite() {
    m_columns = m_ownColumns;
    return m_ownColumns;
  }

  const MetaInfo* vMetaData() const { return m_metaData->metas().constData(); }
  MetaTypeColumn getMetaType(int column) const { return m_metaData->metas()[column].type(); }
  void setMetaType(int column, MetaInfo meta) { m_metaData->setMeta(column, meta); }
  QVector<MetaInfo> getMetaDataDeep() const;
  void setMetaData(QVector<MetaInfo> metas) { m_metaData->setMetas(metas); }

  QString colName(int column) const { return m_metaData->names()[column]; }
  void setColName(int column, QString name) { m_metaData->setName(column, name); }
  void setColName(QVector<QString> names) { m_metaData->setNames(names); }
  QVector<QString> getColNamesDeep() const;
  // -1 when absent.
  int getIndexOfColumn(QString name) const { return m_metaData->indexOf(name); }

  const QVector<SortInfos>& sortInfos() const { return m_metaData->sortOrder(); }
  void setSortInfos(QVector<SortInfos> order) { m_metaData->setSortOrder(order); }
  QVector<SortInfos> getSortInfosDeep() const;

  // Number and key columns as a double (a key without loss); the missing value for a text column.
  double colAsDouble(int column, bool* isMissing) const;
  // Key columns; `ok` is false for a missing key and for columns of another type.
  std::uint32_t colAsKey(int column, bool* ok) const;
  // Any column as text: numbers and keys in their shortest form, missing values as the null text.
  // `isMissing`, when given, receives 1 or 0.
  QString col(int column, unsigned short* isMissing) const;
  // The UTF-8 bytes of a text column; empty when missing.
  std::string_view colAsUtf8(int column, bool* isMissing) const;
  // The value's bytes without its missing-value coding, for hashing and comparing: equal values
  // have equal bytes.
  std::string_view colForHash(int column) const;
  // The format of the dates in a text column; columns carry none of their own, so it is empty.
  QString dateFormat(int column) const;

 private:
  PinOutMetaData* m_metaData;
  RowBuffer* m_values;           // bytes made by copyFrom()
  unsigned char** m_columns;     // one pointer a column
  unsigned char** m_ownColumns;  // the array this row allocated, null in a view
  std::int32_t m_columnCount;
};

static_assert(sizeof(OneRow) == 5 * sizeof(void*));

// Numbers in the shortest form that reads back to the same double; "nan", "inf" and "-inf" for the
// others, empty for the missing value.
KELVARIN_CORE QString shortestText(double number);
