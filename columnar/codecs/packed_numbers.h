// Whole numbers of up to 64 bits, stored with as few bits as their largest one needs, or with their
// upper bits in Huffman codes where some values are much more frequent than others.
//
// Used by IntegerColumn, which makes the numbers small first.
// Layout: docs/gel-format.md, "Packed numbers".
// Threads: any.
// Errors: a read returns false where the bytes are damaged.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/code_array.h"
#include "columnar/codecs/huffman_codes.h"

namespace kelvarin {

// How codes of up to 64 bits are cut into runs of codes that have a CodeWidth, lowest bits first.
class CodeRuns {
 public:
  struct Run {
    int shift = 0;
    CodeWidth width;
  };

  explicit CodeRuns(int bits);

  std::span<const Run> runs() const { return {m_runs.data(), m_count}; }
  std::size_t byteCount(std::size_t count) const;

 private:
  std::array<Run, 3> m_runs;
  std::size_t m_count = 0;
};

class PackedNumbersEncoder {
 public:
  // Codes of a fixed number of bits are read faster than Huffman codes, so they are kept where
  // little is gained; with a preference for speed, where not much is gained.
  enum class Preference { size, speed };
  explicit PackedNumbersEncoder(Preference preference = Preference::size)
      : m_preference(preference) {}

  // How numbers are going to be stored.
  struct Plan {
    int bits = 0;     // of the largest number
    int lowBits = 0;  // that are not in Huffman codes; all of them where there are no such codes
    std::size_t size = 0;  // the bytes that it takes, or a few more or less
  };

  // Whether Huffman codes are taken with a preference for speed, by the sizes with and without.
  static constexpr bool isWorthHuffmanCodes(double with, double without) {
    return with * 6 < without * 5;
  }

  // There is at least one number.
  Plan plan(std::span<const std::uint64_t> numbers);
  // Of so many numbers without Huffman codes, the largest of which has so many bits.
  static Plan planOfEven(int bits, std::size_t count);
  // Changes such a plan of the numbers where Huffman codes are smaller.
  void considerSplits(std::span<const std::uint64_t> numbers, Plan& plan);
  // Appends the numbers that the plan was made for.
  void append(std::span<const std::uint64_t> numbers, const Plan& plan, ByteBuffer& out);

 private:
  [[nodiscard]] bool appendSplit(std::span<const std::uint64_t> numbers, const Plan& plan,
                                 ByteBuffer& out);

  std::size_t limitOfSplit(std::size_t plainSize) const;

  Preference m_preference;
  HuffmanEncoder m_huffman;
  std::vector<std::uint32_t> m_counts;
  std::vector<std::uint16_t> m_upper;
};

class PackedNumbers {
 public:
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count);
  // Decodes the next numbers, kRowsInBatch of them until the last ones, and adds `base` to each.
  [[nodiscard]] bool next(std::uint64_t base, std::span<std::uint64_t> numbers);
  // No number is larger.
  std::uint64_t largest() const;

 private:
  [[nodiscard]] bool addUpper(std::span<std::uint64_t> numbers);

  CodeRuns m_runs{0};
  Bytes m_bytes;  // of the runs
  HuffmanDecoder m_huffman;
  std::size_t m_count = 0;
  std::size_t m_done = 0;
  int m_lowBits = 0;
  bool m_isSplit = false;
};

}  // namespace kelvarin
