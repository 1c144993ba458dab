// Appends the values of rows to the column buffers of a block.
//
// The buffers are listed by type, so that a row is three short loops without branches. Rows of a
// batch are appended column by column. Used by ColumnarHDWriter.
// Threads: the filling thread.
#pragma once

#include <algorithm>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/writer/block_values.h"
#include "host/contract/columns_in_hand.h"

namespace kelvarin {

class RowAppender {
 public:
  // Forgets all targets; the next row is the first of its block.
  void start() {
    m_keys.clear();
    m_numbers.clear();
    m_texts.clear();
    m_row = 0;
  }
  void addTarget(const GelColumn& column, ColumnValues& values);

  // False: the texts of a column exceed the limit of a block.
  [[nodiscard]] bool append(unsigned char* const* row) {
    for (const KeyTarget& target : m_keys) {
      target.keys[m_row] = keyFromBytes(row[target.position]);
    }
    for (const NumberTarget& target : m_numbers) {
      const unsigned char* bytes = row[target.position];
      target.numbers[m_row] = bytes == nullptr ? kNullNumberBits : loadPacked<std::uint64_t>(bytes);
    }
    for (const TextTarget& target : m_texts) {
      if (!appendText(target, m_row, row[target.position])) {
        return false;
      }
    }
    ++m_row;
    return true;
  }
  // The same for `count` rows from row `begin` on.
  [[nodiscard]] bool append(const ColumnsInHand& rows, std::size_t begin, std::size_t count) {
    const std::vector<ColumnsInHand::Column>& columns = rows.columns();
    for (const KeyTarget& target : m_keys) {
      std::copy_n(columns[target.position].keys + begin, count, target.keys + m_row);
    }
    for (const NumberTarget& target : m_numbers) {
      std::memcpy(target.numbers + m_row, columns[target.position].numbers + begin,
                  count * sizeof(double));
    }
    for (const TextTarget& target : m_texts) {
      for (std::size_t i = 0; i < count; ++i) {
        if (!appendText(target, m_row + i, columns[target.position].texts[begin + i])) {
          return false;
        }
      }
    }
    m_row += static_cast<std::uint32_t>(count);
    return true;
  }
  std::uint32_t rows() const { return m_row; }

 private:
  struct KeyTarget {
    std::uint32_t position;
    std::uint32_t* keys;
  };
  struct NumberTarget {
    std::uint32_t position;
    std::uint64_t* numbers;
  };
  struct TextTarget {
    std::uint32_t position;
    std::uint32_t* lengths;
    ByteBuffer* bytes;
  };

  static bool appendText(const TextTarget& target, std::size_t row, const unsigned char* value) {
    if (isNullText(value)) {
      target.lengths[row] = kNullLength;
      return true;
    }
    const std::uint32_t length = lengthFromBytes(value);
    target.lengths[row] = length;
    target.bytes->appendShort(value + sizeof length, length);
    return target.bytes->size() + (std::uint64_t{row} + 1) * sizeof(std::uint32_t) <= kMaxTextsSize;
  }

  std::vector<KeyTarget> m_keys;
  std::vector<NumberTarget> m_numbers;
  std::vector<TextTarget> m_texts;
  std::uint32_t m_row = 0;
};

inline void RowAppender::addTarget(const GelColumn& column, ColumnValues& values) {
  switch (column.type) {
    case GelType::key:
      m_keys.push_back({column.inputPosition, values.keys.get()});
      return;
    case GelType::number:
      m_numbers.push_back({column.inputPosition, values.numbers.get()});
      return;
    case GelType::text:
      values.bytes.clear();
      m_texts.push_back({column.inputPosition, values.keys.get(), &values.bytes});
  }
}

}  // namespace kelvarin
