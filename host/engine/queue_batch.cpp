#include "host/engine/queue_batch.h"

#include <cstring>

namespace kelvarin {

namespace {

constexpr unsigned char kMissingValue[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

}  // namespace

RowLayout::RowLayout(const OneRow& row) {
  bool isFixed = true;
  for (int i = 0; i < row.sz(); ++i) {
    m_types.push_back(row.getMetaType(i));
    m_offsets.push_back(m_rowSize);
    m_rowSize += fixedSizeOf(m_types.back());
    isFixed = isFixed && fixedSizeOf(m_types.back()) != 0;
  }
  m_rowSize = isFixed ? m_rowSize : 0;
}

std::size_t RowLayout::sizeOf(const OneRow& row) const {
  if (m_rowSize != 0) {
    return m_rowSize;
  }
  std::size_t size = 0;
  unsigned char* const* values = row.getAllColForRead();
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    size += sizeOfValue(m_types[i], values[i]);
  }
  return size;
}

void RowLayout::copy(const OneRow& row, unsigned char* to) const {
  unsigned char* const* values = row.getAllColForRead();
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    const std::size_t size = sizeOfValue(m_types[i], values[i]);
    std::memcpy(to, values[i] == nullptr ? kMissingValue : values[i], size);
    to += size;
  }
}

unsigned char* RowLayout::pointAt(unsigned char* bytes, unsigned char** values) const {
  if (m_rowSize != 0) {
    for (std::size_t i = 0; i < m_offsets.size(); ++i) {
      values[i] = bytes + m_offsets[i];
    }
    return bytes + m_rowSize;
  }
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    values[i] = bytes;
    bytes += sizeOfValue(m_types[i], bytes);
  }
  return bytes;
}

void QueueBatch::append(const OneRow& row, std::size_t rowSize) {
  m_layout.copy(row, m_bytes.get() + m_size);
  m_size += rowSize;
  ++m_rowCount;
}

const double* QueueBatch::numbers(int column, std::size_t first, std::size_t count,
                                  double* buffer) const {
  return gather(column, first, count, buffer);
}

const std::uint32_t* QueueBatch::keys(int column, std::size_t first, std::size_t count,
                                      std::uint32_t* buffer) const {
  return gather(column, first, count, buffer);
}

template <typename Value>
const Value* QueueBatch::gather(int column, std::size_t first, std::size_t count,
                                Value* buffer) const {
  const std::size_t rowSize = m_layout.rowSize();
  const unsigned char* value = m_bytes.get() + first * rowSize + m_layout.offsetOf(column);
  for (std::size_t i = 0; i < count; ++i, value += rowSize) {
    std::memcpy(buffer + i, value, sizeof(Value));
  }
  return buffer;
}

}  // namespace kelvarin
