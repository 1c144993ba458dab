// Codes: whole numbers below a power of two, one for each row, stored with as few bits as they
// need.
//
// The low parts of all codes, of 0, 1, 2 or 4 bytes each, are stored first, then the high parts of
// 0 to 8 bits each, so that compression still finds repetitions of whole bytes. Used by the
// encodings of numbers and of texts.
// Layout: docs/gel-format.md, "Codes".
// Threads: any.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kelvarin {

struct CodeWidth {
  int lowBytes = 0;
  int highBits = 0;

  int bits() const { return 8 * lowBytes + highBits; }
};

// Widths are 0 to 24 bits, and 32. Nothing for other numbers.
std::optional<CodeWidth> codeWidthOf(int bits);
// The smallest width that holds the code; nothing when the code has more than 32 bits.
std::optional<CodeWidth> codeWidthFor(std::uint64_t largestCode);
std::size_t codesSize(std::size_t rows, CodeWidth width);

// Codes are processed in batches that fit the first-level cache. A multiple of 8.
inline constexpr std::size_t kRowsInBatch = 512;

// `bits` is 0 to 8. The first code has the lowest bits of the first byte.
std::size_t packedBitsSize(std::size_t rows, int bits);
void packBits(std::span<const std::uint8_t> codes, int bits, unsigned char* out);

// Writes codes into memory of codesSize() bytes.
class StoredCodes {
 public:
  StoredCodes(unsigned char* bytes, std::size_t rows, CodeWidth width)
      : m_low(bytes),
        m_high(bytes + rows * static_cast<std::size_t>(width.lowBytes)),
        m_width(width) {}

  // `first` is a multiple of kRowsInBatch. There are at most kRowsInBatch codes, none wider than
  // the width.
  void store(std::size_t first, std::span<const std::uint32_t> codes) const;

 private:
  unsigned char* m_low;
  unsigned char* m_high;
  CodeWidth m_width;
};

// Reads what StoredCodes has written.
class LoadedCodes {
 public:
  LoadedCodes(const unsigned char* bytes, std::size_t rows, CodeWidth width)
      : m_low(bytes),
        m_high(bytes + rows * static_cast<std::size_t>(width.lowBytes)),
        m_rows(rows),
        m_width(width) {}

  // Calls use(first row, codes) for every batch, until it returns false.
  template <typename Use>
  bool forEachBatch(Use use) const {
    std::uint32_t codes[kRowsInBatch];
    for (std::size_t first = 0; first < m_rows; first += kRowsInBatch) {
      const std::size_t count = std::min(kRowsInBatch, m_rows - first);
      load(first, count, codes);
      if (!use(first, std::span<const std::uint32_t>(codes, count))) {
        return false;
      }
    }
    return true;
  }
  // `first` is a multiple of kRowsInBatch, `count` at most as large.
  void load(std::size_t first, std::size_t count, std::uint32_t* codes) const;

 private:
  const unsigned char* m_low;
  const unsigned char* m_high;
  std::size_t m_rows;
  CodeWidth m_width;
};

std::uint32_t largestOf(std::span<const std::uint32_t> codes);

}  // namespace kelvarin
