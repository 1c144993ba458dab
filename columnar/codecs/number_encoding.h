// The encodings of the numbers of one block, applied before compression.
//
// A byte names the encoding of what follows. Every encoding restores all bits of every number,
// including missing numbers, other NaNs, signs of zeros and infinities. The choice depends on the
// values alone.
// Layout: docs/gel-format.md, "Encodings of numbers".
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/code_array.h"
#include "columnar/codecs/number_integers.h"
#include "columnar/codecs/number_sample.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class NumberEncoding : std::uint8_t {
  plain = 0,             // 8 bytes a number
  frameOfReference = 1,  // decimals scaled to integers, stored as codes above the smallest one
  dictionary = 2,        // the few numbers that occur, and a code for each row
  byteStreamSplit = 3,   // the highest bytes of all numbers, then the next ones, then the rest
  sparse = 4,            // the number that most rows have, and the others
  delta = 5,             // decimals scaled to integers, each less the previous one; not chosen
                         // any more, since integers do the same in fewer bytes
  integers = 6,          // integers of any width, corrections of their quotients, and the others
};

inline constexpr int kMaxExponent = 15;
// The base of a frame of reference has at most this number of bits, so that it and every number are
// exact as doubles.
inline constexpr int kBaseBits = 50;
inline constexpr std::size_t kMaxNumberDictionary = 256;
inline constexpr int kMaxPlanes = 7;

// The numbers that the encoding `integers` may have in so many bytes, in bytes: few bytes may stand
// for very many equal numbers, but not for all the memory that there is.
constexpr std::uint64_t maximumIntegerNumbersSize(std::uint64_t encodedSize) {
  constexpr std::uint64_t kAlways = std::uint64_t{32} << 20;
  constexpr std::uint64_t kOfEachByte = 256;
  return kAlways + kOfEachByte * encodedSize;
}

class NumberEncoder {
 public:
  // Appends the encoding byte and the numbers, which are passed as their bits. There is at least
  // one.
  void append(std::span<const std::uint64_t> numbers, ByteBuffer& out);

 private:
  struct Choice;
  struct Scaling;

  Choice choose(std::span<const std::uint64_t> numbers, const NumberSample& sample);
  static double leastSaving(const NumberSample& sample, const Choice& choice);
  [[nodiscard]] bool appendIntegers(std::span<const std::uint64_t> numbers,
                                    const NumberSample& sample, const Choice& choice,
                                    ByteBuffer& out);
  bool mayCompress(const NumberSample& sample, const Choice& choice) const;
  void appendChosen(const Choice& choice, std::span<const std::uint64_t> numbers, ByteBuffer& out);
  void appendFrameOfReference(const Scaling& scaling, std::size_t rows, ByteBuffer& out);
  void appendDictionary(const std::optional<Scaling>& scaling, ByteBuffer& out);
  void appendSparse(const Choice& choice, std::span<const std::uint64_t> numbers, ByteBuffer& out);
  void appendInner(const std::optional<Scaling>& outer, std::span<const std::uint64_t> numbers,
                   ByteBuffer& out);
  CodeWidth widthOfBytes(CodeWidth width) const;
  bool fillDictionary(std::span<const std::uint64_t> numbers);
  Scaling scaleAll(int exponent, std::span<const std::uint64_t> numbers);
  std::optional<Scaling> findScaling(std::span<const std::uint64_t> numbers,
                                     std::span<const std::uint64_t> sample);

  IntegerNumbersEncoder m_integerNumbers;
  std::vector<std::int64_t> m_integers;  // numbers times a power of ten
  std::vector<std::uint64_t> m_others;   // those that the sparse encoding stores
  std::vector<std::uint64_t> m_dictionary;
  ByteBuffer m_compressed;
  std::vector<std::uint8_t> m_codes;  // a byte a row, in the dictionary or of few bits
};

// `bytes` begin with the encoding byte. Their structure is checked before `numbers` allocates. The
// result has 8 bytes a row, or only 8 bytes where one stored number stands for all rows: such a
// block may claim any number of rows without a byte for each. `unknownEncoding` is set to the
// encoding byte when this version does not know it.
[[nodiscard]] ReadStatus decodeNumbers(Bytes bytes, std::uint32_t rows, ByteBuffer& numbers,
                                       int& unknownEncoding);

// Where a single number has been decoded for `count` rows, repeats it for each of them.
void repeatToSize(std::size_t count, ByteBuffer& numbers);

}  // namespace kelvarin
