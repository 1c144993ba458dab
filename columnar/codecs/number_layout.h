// The layouts in which the numbers of one block are stored before compression.
//
// A layout byte says which; what follows it is described in docs/gel-format.md, "Layouts of
// numbers". Every layout gives back every bit of every number, missing ones and other NaNs, signs
// of zeros and infinities included. Which one is taken depends on the values alone. Threads: one at
// a time an object.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/code_array.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class NumberLayout : std::uint8_t {
  plain = 0,         // 8 bytes a number
  scaled = 1,        // whole numbers of a tenth, a hundredth, ... above a base
  dictionary = 2,    // the few numbers that occur, and a code for each row
  significance = 3,  // the highest bytes of all numbers, then the next ones, then the rest
  sparse = 4,        // the number that most rows have, and the others
  differences = 5,   // scaled, each less the one before
};

inline constexpr int kLargestExponent = 15;
// A base has at most so many bits, so that it and every number are exact as doubles.
inline constexpr int kBaseBits = 50;
inline constexpr std::size_t kLargestNumberDictionary = 256;
inline constexpr int kMostPlanes = 7;

class NumberLayoutEncoder {
 public:
  // Appends the layout byte and the numbers, given by their bits; there is at least one.
  void append(std::span<const std::uint64_t> numbers, ByteBuffer& out);

 private:
  struct Choice;
  struct Scaling;

  Choice choose(std::span<const std::uint64_t> numbers);
  void appendScaled(const Scaling& scaling, std::size_t rows, ByteBuffer& out);
  void appendScaledOrDifferences(const Scaling& scaling, std::size_t rows, ByteBuffer& out);
  [[nodiscard]] bool appendDifferences(const Scaling& scaling, std::size_t rows, ByteBuffer& out);
  void appendDictionary(const std::optional<Scaling>& scaling, ByteBuffer& out);
  void appendSparse(const Choice& choice, std::span<const std::uint64_t> numbers, ByteBuffer& out);
  void appendInner(const std::optional<Scaling>& outer, std::span<const std::uint64_t> numbers,
                   ByteBuffer& out);
  CodeWidth widthOfBytes(CodeWidth width) const;
  bool fillDictionary(std::span<const std::uint64_t> numbers);
  Scaling scaleAll(int exponent, std::span<const std::uint64_t> numbers);
  std::optional<Scaling> findScaling(std::span<const std::uint64_t> numbers,
                                     std::span<const std::uint64_t> sample);

  std::vector<std::int64_t> m_integers;  // numbers times a power of ten, for the scaled layout
  std::vector<std::uint32_t> m_differences;
  std::vector<std::uint64_t> m_others;  // those that the sparse layout stores
  std::vector<std::uint64_t> m_dictionary;
  ByteBuffer m_candidate;
  ByteBuffer m_compressed;
  std::vector<std::uint8_t> m_codes;  // a byte a row, in the dictionary or of few bits
};

// `bytes` begin with the layout byte. Their structure is checked before `numbers` takes memory; it
// then has 8 bytes a row, or 8 bytes for all rows where they are stored as one number: such a block
// may claim any number of rows without a byte for each. `unknownLayout` is set, to the layout byte,
// when that is the trouble.
[[nodiscard]] ReadStatus decodeNumbers(Bytes bytes, std::uint32_t rows, ByteBuffer& numbers,
                                       int& unknownLayout);

}  // namespace kelvarin
