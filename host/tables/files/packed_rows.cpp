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
      const double number = numberFromBytes(value);
      std::memcpy(m_bytes.get() + m_used, &number, sizeof number);
      m_used += sizeof number;
    } else if (type == MetaTypeColumn::key) {
      const std::uint32_t key = keyFromBytes(value);
      std::memcpy(m_bytes.get() + m_used, &key, sizeof key);
      m_used += sizeof key;
    } else {
      appendText(value, columnsLeft);
    }
    --columnsLeft;
  }
  ++m_rowCount;
}

void PackedRows::appendText(const unsigned char* value, std::size_t columnsLeft) {
  if (isNullText(value)) {
    std::memcpy(m_bytes.get() + m_used, &kNullTextLength, 4);
    m_used += 4;
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
