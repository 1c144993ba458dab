#include "host/tables/csv/csv_text.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

namespace {

constexpr std::size_t kFirstCapacity = 256 * 1024;
// Buffers that have grown for long rows are not kept.
constexpr std::size_t kLargestKept = 4 * 1024 * 1024;

}  // namespace

CsvText::~CsvText() {
  if (m_buffer.capacity <= kLargestKept) {
    m_store->giveBack(std::move(m_buffer));
  }
}

char* CsvText::grow(std::size_t used, std::size_t size) {
  const std::size_t capacity =
      std::max(kFirstCapacity, m_buffer.capacity + m_buffer.capacity / 2) + size;
  std::unique_ptr<char[]> larger(new char[capacity]);
  if (used > 0) {
    std::memcpy(larger.get(), m_buffer.bytes.get(), used);
  }
  m_buffer = {std::move(larger), capacity};
  return m_buffer.bytes.get() + used;
}

}  // namespace kelvarin
