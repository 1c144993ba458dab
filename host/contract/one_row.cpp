#include "host/contract/one_row.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/shortest_number.h"

using kelvarin::isNullKey;
using kelvarin::isNullNumber;
using kelvarin::isNullText;
using kelvarin::keyFromBytes;
using kelvarin::kNullKey;
using kelvarin::kNullNumber;
using kelvarin::numberFromBytes;
using kelvarin::sizeOfValue;
using kelvarin::textFromBytes;

namespace {

bool isMissingValue(MetaTypeColumn type, const unsigned char* bytes) {
  switch (type) {
    case MetaTypeColumn::number:
      return isNullNumber(numberFromBytes(bytes));
    case MetaTypeColumn::key:
      return isNullKey(keyFromBytes(bytes));
    default:
      return isNullText(bytes);
  }
}

}  // namespace

OneRow::OneRow(PinOutMetaData* metaData)
    : m_metaData(metaData),
      m_values(nullptr),
      m_columns(nullptr),
      m_ownColumns(nullptr),
      m_columnCount(0) {
  setNumberOfColumns(metaData->columnCount());
}

OneRow::~OneRow() {
  delete[] m_ownColumns;
  delete m_values;
}

void OneRow::setNumberOfColumns(int count) {
  auto columns = std::make_unique<unsigned char*[]>(static_cast<std::size_t>(std::max(count, 1)));
  m_metaData->setColumnCount(count);
  delete[] m_ownColumns;
  m_ownColumns = columns.release();
  m_columns = m_ownColumns;
  m_columnCount = count;
}

void OneRow::copyFrom(const OneRow* other) {
  if (m_metaData != other->m_metaData) {
    *m_metaData = *other->m_metaData;
  }
  if (m_columnCount != other->m_columnCount || m_ownColumns == nullptr) {
    setNumberOfColumns(other->sz());
  }
  if (m_values == nullptr) {
    m_values = new RowBuffer(1024);
  }
  m_values->reset();
  m_columns = m_ownColumns;
  for (int i = 0; i < sz(); ++i) {
    const unsigned char* bytes = other->m_columns[i];
    if (bytes == nullptr) {
      m_ownColumns[i] = nullptr;
      continue;
    }
    const std::size_t size = sizeOfValue(getMetaType(i), bytes);
    m_ownColumns[i] = m_values->allocate(size);
    std::copy_n(bytes, size, m_ownColumns[i]);
  }
}

QVector<MetaInfo> OneRow::getMetaDataDeep() const {
  QVector<MetaInfo> metas = m_metaData->metas();
  metas.detach();
  return metas;
}

QVector<QString> OneRow::getColNamesDeep() const {
  QVector<QString> names = m_metaData->names();
  names.detach();
  return names;
}

QVector<SortInfos> OneRow::getSortInfosDeep() const {
  QVector<SortInfos> order = m_metaData->sortOrder();
  order.detach();
  return order;
}

double OneRow::colAsDouble(int column, bool* isMissing) const {
  double number = kNullNumber;
  if (getMetaType(column) == MetaTypeColumn::number) {
    number = numberFromBytes(m_columns[column]);
  } else if (getMetaType(column) == MetaTypeColumn::key) {
    const std::uint32_t key = keyFromBytes(m_columns[column]);
    number = isNullKey(key) ? kNullNumber : key;
  }
  if (isMissing != nullptr) {
    *isMissing = isNullNumber(number);
  }
  return number;
}

std::uint32_t OneRow::colAsKey(int column, bool* ok) const {
  const std::uint32_t key =
      getMetaType(column) == MetaTypeColumn::key ? keyFromBytes(m_columns[column]) : kNullKey;
  if (ok != nullptr) {
    *ok = !isNullKey(key);
  }
  return key;
}

QString OneRow::col(int column, unsigned short* isMissing) const {
  QString text;
  switch (getMetaType(column)) {
    case MetaTypeColumn::number:
      text = shortestText(numberFromBytes(m_columns[column]));
      break;
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(m_columns[column]);
      text = isNullKey(key) ? QString() : QString::number(key);
      break;
    }
    default:
      text = qStringFromBytes(m_columns[column]);
  }
  if (isMissing != nullptr) {
    *isMissing = text.isNull() ? 1 : 0;
  }
  return text;
}

std::string_view OneRow::colAsUtf8(int column, bool* isMissing) const {
  const unsigned char* bytes = m_columns[column];
  if (isMissing != nullptr) {
    *isMissing = isNullText(bytes);
  }
  return textFromBytes(bytes);
}

std::string_view OneRow::colForHash(int column) const {
  const unsigned char* bytes = m_columns[column];
  const MetaTypeColumn type = getMetaType(column);
  if (isMissingValue(type, bytes)) {
    return {};
  }
  if (type == MetaTypeColumn::number && numberFromBytes(bytes) == 0) {
    static constexpr char zero[sizeof(double)] = {};  // 0 and -0 are equal
    return {zero, sizeof zero};
  }
  return {reinterpret_cast<const char*>(bytes), sizeOfValue(type, bytes)};
}

QString OneRow::dateFormat(int) const {
  return {};
}

QString shortestText(double number) {
  if (isNullNumber(number)) {
    return {};
  }
  char digits[kelvarin::kLongestNumberText];
  const char* end = kelvarin::appendShortest(digits, number);
  return QString::fromLatin1(digits, static_cast<qsizetype>(end - digits));
}
