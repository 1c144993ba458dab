// The decoded values of one block, and its rows.
//
// Values are stored column by column in the bytes that rows point to
// (host/contract/column_bytes.h), so that a row is one pointer a column, and rows can be looked at
// ahead. Memory is kept when a block is filled again.
// Threads: filled on the reading thread, emptied on the engine's.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "columnar/codecs/text_encoding.h"
#include "host/contract/column_bytes.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// The values of one column. The type decides which member is filled, with a single value where one
// stands for all rows.
struct DecodedColumn {
  ByteBuffer values;   // numbers or keys
  DecodedTexts texts;  // all other types
};

class DecodedBlock final : public RowsInHand {
 public:
  void setColumns(const std::vector<MetaTypeColumn>& types);
  // Columns are filled from the first one on. Each is allocated at its first use, so that a forged
  // file of many columns takes little memory before the first damage ends the reading.
  DecodedColumn& column(std::size_t index) {
    if (index == m_columns.size()) {
      m_columns.emplace_back();
    }
    return m_columns[index];
  }

  // Begins the rows, after every column has been filled with `rowCount` values.
  void start(std::uint64_t firstRow, std::uint64_t rowCount);
  std::uint64_t firstRow() const { return m_firstRow; }
  std::uint64_t rowCount() const { return m_rowCount; }

  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* buffer) const override {
    return values(column, first, count, buffer);
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* buffer) const override {
    return values(column, first, count, buffer);
  }

  const unsigned char* const* texts(int column, std::size_t first, std::size_t count,
                                    const unsigned char** buffer) const override {
    const DecodedTexts& texts = m_columns[static_cast<std::size_t>(column)].texts;
    if (texts.offsets.size() == 1) {
      return std::fill_n(buffer, count, texts.text(0)) - count;
    }
    for (std::size_t i = 0; i < count; ++i) {
      buffer[i] = texts.text(first + i);
    }
    return buffer;
  }

  // Skips rows; there are at least `count` more.
  void skip(std::size_t count) {
    m_rowsLeft -= count;
    for (Cursor& cursor : m_cursors) {
      cursor.next += count * cursor.step;
      cursor.offset += cursor.offset == nullptr ? 0 : count;
    }
  }
  // Points `values` at the next row's values; false when there is none left.
  bool takeRow(unsigned char** values) {
    if (m_rowsLeft == 0) [[unlikely]] {
      return false;
    }
    --m_rowsLeft;
    for (Cursor& cursor : m_cursors) {
      if (cursor.offset == nullptr) {
        *values++ = cursor.next;
        cursor.next += cursor.step;
      } else {
        *values++ = cursor.next + *cursor.offset++;
      }
    }
    return true;
  }

 private:
  template <typename Value>
  const Value* values(int column, std::size_t first, std::size_t count, Value* buffer) const {
    const ByteBuffer& bytes = m_columns[static_cast<std::size_t>(column)].values;
    const auto* all = reinterpret_cast<const Value*>(bytes.data());
    return bytes.size() > sizeof(Value) ? all + first : std::fill_n(buffer, count, *all) - count;
  }

  // The address of a column's next value.
  struct Cursor {
    unsigned char* next = nullptr;          // for texts, that of the first one
    const std::uint32_t* offset = nullptr;  // of the next text; null when texts have no offsets
    std::size_t step = 0;                   // between values; 0 where one stands for all rows
  };

  static void startColumn(DecodedColumn& column, std::size_t size, Cursor& cursor);

  std::vector<DecodedColumn> m_columns;
  std::vector<std::size_t> m_sizes;  // of a value, by column; 0 for texts
  std::vector<Cursor> m_cursors;
  std::uint64_t m_firstRow = 0;
  std::uint64_t m_rowCount = 0;
  std::uint64_t m_rowsLeft = 0;
};

}  // namespace kelvarin
