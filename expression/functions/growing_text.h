// A text that is made at the end of an arena, piece by piece, where its size is not known before.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "expression/functions/column_text.h"
#include "expression/functions/text_arena.h"

namespace kelvarin {

class GrowingText {
 public:
  // Nothing else may be allocated in the arena until take(). A text beyond `maxSize` is dropped.
  GrowingText(TextArena& arena, std::size_t maxSize) : m_arena(arena), m_maxSize(maxSize) {}

  void reserve(std::size_t capacity) {
    char* const bytes = m_arena.allocate(capacity);
    if (m_size > 0) {
      std::memcpy(bytes, m_bytes, m_size);
    }
    m_bytes = bytes;
    m_capacity = capacity;
  }

  void append(std::string_view part) {
    if (isTooLong() || part.empty()) {
      return;
    }
    if (part.size() > m_maxSize - m_size) {
      m_isTooLong = true;
      return;
    }
    if (part.size() > m_capacity - m_size) {
      reserve(std::max(2 * m_capacity, m_size + part.size()));
    }
    std::memcpy(m_bytes + m_size, part.data(), part.size());
    m_size += part.size();
  }

  bool isTooLong() const { return m_isTooLong; }

  // Null where it is too long.
  ColumnText take() {
    m_arena.shrink(m_capacity - m_size);
    return m_isTooLong ? ColumnText() : ColumnText({m_bytes, m_size});
  }

 private:
  TextArena& m_arena;
  const std::size_t m_maxSize;
  char* m_bytes = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
  bool m_isTooLong = false;
};

}  // namespace kelvarin
