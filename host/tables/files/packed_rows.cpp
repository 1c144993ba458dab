#include "host/tables/files/packed_rows.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

void PackedRows::append(const OneRow& row) {
  unsigned char* const* values = row.getAllColForRead();
  std::size_t columnsLeft = m_types.size();
  reserve(columnsLeft * kFixedSize);
  for (const MetaTypeColumn type : m_types) {
    const unsigned char* value = *values++;
    if (type == MetaTypeColumn::number) {
      appendFixed(numberFromBytes(value));
    } else if (type == MetaTypeColumn::key) {
      appendFixed(keyFromBytes(value));
    } else {
      appendText(value, columnsLeft);
    }
    --columnsLeft;
  }
  ++m_rowCount;
}

std::size_t PackedRows::append(const ColumnsInHand& rows, std::size_t begin, std::size_t end) {
  std::size_t row = begin;
  for (; row < end && !isFull(); ++row) {
    std::size_t columnsLeft = m_types.size();
    reserve(columnsLeft * kFixedSize);
    for (const ColumnsInHand::Column& column : rows.columns()) {
      if (column.numbers != nullptr) {
        appendFixed(column.numbers[row]);
      } else if (column.keys != nullptr) {
        appendFixed(column.keys[row]);
      } else {
        appendText(column.texts[row], columnsLeft);
      }
      --columnsLeft;
    }
  }
  m_rowCount += static_cast<long long>(row - begin);
  return row - begin;
}

void PackedRows::appendText(const unsigned char* value, std::size_t columnsLeft) {
  if (isNullText(value)) {
    appendFixed(kNullTextLength);
    return;
  }
  const std::size_t size = 4 + lengthFromBytes(value);
  std::memcpy(reserve(size + columnsLeft * kFixedSize), value, size);
  m_used += size;
}

void PackedRows::grow(std::size_t size) {
  constexpr std::size_t kFirstCapacity = kWantedBytes + kWantedBytes / 8;
  m_capacity = std::max(kFirstCapacity, m_capacity + m_capacity / 2 + size);
  std::unique_ptr<unsigned char[]> larger(new unsigned char[m_capacity]);
  if (m_used > 0) {
    std::memcpy(larger.get(), m_bytes.get(), m_used);
  }
  m_bytes = std::move(larger);
}

void PackedRows::clear() {
  m_used = 0;
  m_taken = 0;
  m_rowCount = 0;
  m_rowsTaken = 0;
}

bool PackedRows::takeRow(unsigned char** values) {
  if (m_rowsTaken == m_rowCount) [[unlikely]] {
    return false;
  }
  ++m_rowsTaken;
  for (const MetaTypeColumn type : m_types) {
    unsigned char* value = m_bytes.get() + m_taken;
    *values++ = value;
    m_taken += sizeOfValue(type, value);
  }
  return true;
}

}  // namespace kelvarin
