// Up to 15 bytes that occur in the texts of a block, perhaps with the end of a text behind them.
//
// The end takes part so that lengths need not be stored. Used by the symbol encoding of texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/byte_cursor.h"
#include "columnar/codecs/text_hash.h"
#include "columnar/codecs/text_limits.h"

namespace kelvarin {

// Symbols are numbered by 12 bits.
inline constexpr std::size_t kMaxSymbols = 4096;
inline constexpr std::size_t kMaxSymbolSize = 15;
// A decoder writes the length of the next text behind the bytes of a symbol that ends one.
inline constexpr std::size_t kMaxEndingSize = kMaxSymbolSize + 1 - kLengthSize;

// 16 bytes in memory: those of the symbol, zeros, and a last one with size and flags.
struct Symbol {
  std::uint64_t low = 0;
  std::uint64_t high = 0;

  static constexpr int kSizeShift = 56;
  static constexpr std::uint64_t kEnds = std::uint64_t{0x80} << kSizeShift;
  static constexpr std::uint64_t kEndsNull = std::uint64_t{0xC0} << kSizeShift;

  static Symbol ofByte(unsigned char byte) { return {byte, std::uint64_t{1} << kSizeShift}; }
  // The end of a text, without bytes.
  static Symbol end() { return {0, kEnds}; }
  // All of a null text.
  static Symbol null() { return {0, kEndsNull}; }

  std::size_t size() const { return high >> kSizeShift & 0x1F; }
  bool endsText() const { return (high & kEnds) != 0; }
  bool isNull() const { return (high & kEndsNull) == kEndsNull; }
  unsigned char byte(std::size_t index) const {
    return static_cast<unsigned char>((index < 8 ? low : high) >> (index % 8 * 8));
  }
  bool operator==(const Symbol& other) const {
    return ((low ^ other.low) | (high ^ other.high)) == 0;
  }
  std::uint64_t hash() const {
    return mixed(low ^ 0x9E3779B97F4A7C15ull, high ^ 0xD1B54A32D192ED03ull);
  }

  // Symbols that end no text come first, in the order of their bytes, and the null text last.
  std::pair<std::uint64_t, std::uint64_t> order() const {
    const std::uint64_t first = __builtin_bswap64(low);
    const std::uint64_t last = __builtin_bswap64(high << 8 >> 8);
    return {high >> (kSizeShift + 6) << (kSizeShift + 6) | first >> 2,
            first << 62 | last >> 2 | size()};
  }
};

// The bytes of one symbol and then those of another one, which end as that does.
inline Symbol joined(const Symbol& left, const Symbol& right) {
  unsigned char bytes[2 * sizeof(Symbol)] = {};
  std::memcpy(bytes, &left, sizeof left);
  std::memcpy(bytes + left.size(), &right, sizeof right - 1);
  Symbol symbol;
  std::memcpy(&symbol, bytes, sizeof symbol);
  constexpr std::uint64_t kBytes = (std::uint64_t{1} << Symbol::kSizeShift) - 1;
  symbol.high = (symbol.high & kBytes) | (right.high & Symbol::kEndsNull) |
                std::uint64_t{left.size() + right.size()} << Symbol::kSizeShift;
  return symbol;
}

}  // namespace kelvarin
