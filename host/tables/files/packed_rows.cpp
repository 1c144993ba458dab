#include "host/tables/files/packed_rows.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

namespace {

template <typename Value>
unsigned char* put(unsigned char* target, Value value) {
  std::memcpy(target, &value, sizeof value);
  return target + sizeof value;
}

unsigned char* putText(unsigned char* target, const unsigned char* text) {
  if (isNullText(text)) {
    return put(target, kNullTextLength);
  }
  const std::size_t size = 4 + lengthFromBytes(text);
  std::memcpy(target, text, size);
  return target + size;
}

}  // namespace

PackedRows::PackedRows(std::vector<MetaTypeColumn> types) : m_types(std::move(types)) {
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    if (m_types[i] != MetaTypeColumn::number && m_types[i] != MetaTypeColumn::key) {
      m_textColumns.push_back(i);
    }
  }
}

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
    // The compiler could not keep a member in a register while bytes are written.
    unsigned char* target = reserve(sizeOfRow(rows, row));
    for (const ColumnsInHand::Column& column : rows.columns()) {
      if (column.numbers != nullptr) {
        target = put(target, column.numbers[row]);
      } else if (column.keys != nullptr) {
        target = put(target, column.keys[row]);
      } else {
        target = putText(target, column.texts[row]);
      }
    }
    m_used = static_cast<std::size_t>(target - m_bytes.get());
  }
  m_rowCount += static_cast<long long>(row - begin);
  return row - begin;
}

// An upper bound: each value is counted as if it were the largest of a fixed size.
std::size_t PackedRows::sizeOfRow(const ColumnsInHand& rows, std::size_t row) const {
  std::size_t size = m_types.size() * kFixedSize;
  for (const std::size_t column : m_textColumns) {
    const unsigned char* text = rows.columns()[column].texts[row];
    size += isNullText(text) ? 0 : lengthFromBytes(text);
  }
  return size;
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
  unsigned char* value = m_bytes.get() + m_taken;
  for (const MetaTypeColumn type : m_types) {
    *values++ = value;
    value += sizeOfValue(type, value);
  }
  m_taken = static_cast<std::size_t>(value - m_bytes.get());
  return true;
}

}  // namespace kelvarin
