// The memory of one column of a batch while a reader fills it, in the bytes of column_bytes.h.
//
// Threads: one at a time.
#pragma once

#include <cstring>
#include <memory>

#include "host/contract/row_batch.h"

namespace kelvarin {

class ColumnMemory {
 public:
  // For `rowCount` values; of texts, for `textCapacity` bytes with their counts.
  ColumnMemory(MetaTypeColumn type, std::size_t rowCount, std::size_t textCapacity = 0)
      : m_type(type), m_positionBytes(fixedSizeOf(type) != 0 ? 0 : positionBytesOf(rowCount)) {
    m_bytes = std::make_shared_for_overwrite<unsigned char[]>(
        m_positionBytes + fixedSizeOf(type) * rowCount + textCapacity);
  }

  MetaTypeColumn type() const { return m_type; }
  double* numbers() { return reinterpret_cast<double*>(m_bytes.get()); }
  std::uint32_t* keys() { return reinterpret_cast<std::uint32_t*>(m_bytes.get()); }
  std::uint32_t* positions() { return reinterpret_cast<std::uint32_t*>(m_bytes.get()); }
  unsigned char* texts() { return m_bytes.get() + m_positionBytes; }

  // The column; `textSize` are the bytes of texts that are used.
  BatchColumn column(std::size_t textSize = 0) const {
    const unsigned char* bytes = m_bytes.get();
    switch (m_type) {
      case MetaTypeColumn::number:
        return BatchColumn::ofNumbers(m_bytes, reinterpret_cast<const double*>(bytes));
      case MetaTypeColumn::key:
        return BatchColumn::ofKeys(m_bytes, reinterpret_cast<const std::uint32_t*>(bytes));
      default:
        return BatchColumn::ofTexts(m_type, m_bytes, bytes + m_positionBytes,
                                    reinterpret_cast<const std::uint32_t*>(bytes), textSize);
    }
  }

 private:
  static std::size_t positionBytesOf(std::size_t rowCount) {
    return rowCount * sizeof(std::uint32_t);
  }

  MetaTypeColumn m_type;
  std::size_t m_positionBytes;  // before the texts
  std::shared_ptr<unsigned char[]> m_bytes;
};

// Write a text, or the null text, at `target`, and return the address after it.
inline unsigned char* putText(unsigned char* target, const char* bytes, std::size_t size) {
  const auto length = static_cast<std::uint32_t>(size);
  std::memcpy(target, &length, 4);
  if (size > 0) {
    std::memcpy(target + 4, bytes, size);
  }
  return target + 4 + size;
}

inline unsigned char* putNullText(unsigned char* target) {
  std::memcpy(target, &kNullTextLength, 4);
  return target + 4;
}

}  // namespace kelvarin
