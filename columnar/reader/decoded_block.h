// The values of one block, decoded, and its rows one after the other.
//
// Values lie column by column in the bytes that rows point to (host/contract/column_bytes.h), so
// that handing out a row is one pointer a column, and rows can be looked at ahead. Memory is kept
// when a block is used again.
// Threads: one at a time; filled on the reading thread, emptied on the engine's.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "columnar/codecs/text_layout.h"
#include "host/contract/column_bytes.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// The values of one column. The type decides which part is filled. One value where all rows are
// stored as one.
struct DecodedColumn {
  ByteBuffer values;   // numbers or keys
  DecodedTexts texts;  // all other types
};

class DecodedBlock final : public RowsInHand {
 public:
  void setColumns(const std::vector<MetaTypeColumn>& types);
  // Columns are filled from the first one on. Each takes room when it is asked for, so that a
  // forged file of many columns takes little before the first damage ends it.
  DecodedColumn& column(std::size_t index) {
    if (index == m_columns.size()) {
      m_columns.emplace_back();
    }
    return m_columns[index];
  }

  // Every column has been filled with `rowCount` values; the rows begin.
  void start(std::uint64_t firstRow, std::uint64_t rowCount);
  std::uint64_t firstRow() const { return m_firstRow; }
  std::uint64_t rowCount() const { return m_rowCount; }

  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* room) const override {
    return values(column, first, count, room);
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* room) const override {
    return values(column, first, count, room);
  }

  const unsigned char* const* texts(int column, std::size_t first, std::size_t count,
                                    const unsigned char** room) const override {
    const DecodedTexts& texts = m_columns[static_cast<std::size_t>(column)].texts;
    if (texts.offsets.size() == 1) {
      return std::fill_n(room, count, texts.text(0)) - count;
    }
    for (std::size_t i = 0; i < count; ++i) {
      room[i] = texts.text(first + i);
    }
    return room;
  }

  // Passes over rows, of which there are so many.
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
  const Value* values(int column, std::size_t first, std::size_t count, Value* room) const {
    const ByteBuffer& bytes = m_columns[static_cast<std::size_t>(column)].values;
    const auto* all = reinterpret_cast<const Value*>(bytes.data());
    return bytes.size() > sizeof(Value) ? all + first : std::fill_n(room, count, *all) - count;
  }

  // Where a column's next value is.
  struct Cursor {
    unsigned char* next = nullptr;          // of texts, the first one's
    const std::uint32_t* offset = nullptr;  // of the next text; null without offsets
    std::size_t step = 0;                   // from value to value; 0 where all rows have one
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
