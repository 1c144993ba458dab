// A buffer of texts as text columns have them, each with its count before it.
//
// Used by: arrow_texts.cpp, which points each row at one of them.
// Errors: std::bad_alloc, also where the texts of one column would take 4 GiB.
#pragma once

#include <cstring>
#include <optional>
#include <string_view>

#include "host/contract/row_batch.h"
#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

class CountedTexts {
 public:
  // `size` bytes are expected; more grow the buffer.
  explicit CountedTexts(std::size_t size) : m_memory(size), m_capacity(size) {}

  // Return the position of a text, which is new, and of the null text.
  std::uint32_t add(std::string_view text) {
    const std::uint32_t position = addSpace(4 + text.size());
    const auto length = static_cast<std::uint32_t>(text.size());
    std::memcpy(m_memory.values + position, &length, 4);
    if (!text.empty()) {
      std::memcpy(m_memory.values + position + 4, text.data(), text.size());
    }
    return position;
  }
  std::uint32_t null() {
    if (!m_null) {
      m_null = addSpace(4);
      std::memcpy(m_memory.values + *m_null, &kNullTextLength, 4);
    }
    return *m_null;
  }
  // The column of rows whose texts are at these positions.
  BatchColumn column(const ColumnMemory<std::uint32_t>& positions) const {
    auto owner = std::make_shared<Owner>(Owner{m_memory.owner, positions.owner});
    return BatchColumn::ofTexts(MetaTypeColumn::text, std::move(owner), m_memory.values,
                                positions.values, m_size);
  }

 private:
  struct Owner {
    std::shared_ptr<arrow::Buffer> texts;
    std::shared_ptr<arrow::Buffer> positions;
  };

  std::uint32_t addSpace(std::size_t size) {
    if (size > m_capacity - m_size) [[unlikely]] {
      grow(size);
    }
    const auto position = static_cast<std::uint32_t>(m_size);
    m_size += size;
    return position;
  }
  void grow(std::size_t size) {
    if (m_size + size > UINT32_MAX) {
      throw std::bad_alloc();
    }
    m_capacity = 2 * (m_size + size);
    ColumnMemory<unsigned char> larger(m_capacity);
    std::memcpy(larger.values, m_memory.values, m_size);
    m_memory = larger;
  }

  ColumnMemory<unsigned char> m_memory;
  std::size_t m_capacity;
  std::size_t m_size = 0;
  std::optional<std::uint32_t> m_null;
};

}  // namespace kelvarin
