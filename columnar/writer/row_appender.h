// Appends the values of rows to the column buffers of a block.
//
// The buffers are listed by type, so that a row is three short loops without branches. A batch is
// appended column by column. Used by ColumnarHDWriter.
// Threads: the filling thread.
#pragma once

#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/writer/block_values.h"
#include "host/contract/row_batch.h"

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
  // The same for the rows of a batch from `begin` to before `end`.
  [[nodiscard]] bool append(const RowBatch& batch, std::size_t begin, std::size_t end);
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

  [[nodiscard]] bool appendTexts(const TextTarget& target, const RowBatch& batch, std::size_t begin,
                                 std::size_t end) const;
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

}  // namespace kelvarin
