// Numbers of a block that are stored as a column of integers, the encoding `integers`.
//
// A scale says what number an integer stands for. A mark says of each row whether that number is
// corrected by a few units of least precision, as products and sums need it, or whether the number
// is one of the others, which are stored by themselves: a few real numbers among amounts, and the
// missing ones. Used by NumberEncoder and decodeNumbers().
// Layout: docs/gel-format.md, "Numbers as integers".
// Threads: any.
// Errors: decoding returns false where the bytes are damaged.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/number_scale.h"

namespace kelvarin {

inline constexpr int kMaxMarkBits = 16;
// The mark of other numbers has all bits set; the others are zigzag-encoded corrections.
constexpr bool isMarkWidth(int bits) {
  return bits == 0 || bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == kMaxMarkBits;
}
constexpr std::uint32_t markOfOthers(int bits) {
  return (1u << bits) - 1;
}
// Marks of few bits share a byte, so that Huffman codes of it take a fraction of a bit for each.
constexpr std::size_t marksInItem(int bits) {
  return bits < 8 ? 8 / static_cast<std::size_t>(bits) : 1;
}

class IntegerNumbersEncoder {
 public:
  // Encodes all but the others(), for which numbers in another encoding have to follow. False where
  // both would take `limit` bytes or more.
  [[nodiscard]] bool encode(std::span<const std::uint64_t> numbers, const NumberScale& scale,
                            std::size_t limit);
  Bytes bytes() const { return m_bytes.bytes(); }
  std::span<const std::uint64_t> others() const { return m_others; }
  // The bytes with the others in 8 bytes each, unless they are missing.
  std::size_t size() const { return m_bytes.size() + m_sizeOfOthers; }

 private:
  int findMarkBits() const;
  void separate(std::span<const std::uint64_t> numbers, int markBits);
  IntegerSteps takeSteps();

  std::vector<std::uint64_t> m_integers;  // of the rows that have one, then their steps
  std::vector<std::uint64_t> m_corrections;
  std::vector<std::uint64_t> m_marks;  // packed in items
  std::vector<std::uint64_t> m_others;
  std::size_t m_sizeOfOthers = 0;
  IntegerColumnEncoder m_markColumn;
  IntegerColumnEncoder m_integerColumn{IntegerColumnEncoder::Preference::speed};
  ByteBuffer m_bytes;
};

// `reader` is behind the encoding byte, and ends with the others.
[[nodiscard]] bool decodeIntegerNumbers(ByteReader& reader, std::size_t rows, ByteBuffer& numbers);

}  // namespace kelvarin
