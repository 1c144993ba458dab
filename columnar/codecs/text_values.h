// The texts of one column in one block of rows, contiguous in memory.
#pragma once

#include <cstdint>
#include <span>

#include "base/byte_cursor.h"

namespace kelvarin {

inline constexpr std::uint32_t kNullLength = 0xFFFFFFFF;

// The null text has the length kNullLength and no bytes.
struct TextValues {
  std::span<const std::uint32_t> lengths;
  Bytes bytes;

  // The size of the plain encoding with lengths of 32 bits.
  std::uint64_t rawSize() const { return lengths.size_bytes() + bytes.size(); }
};

// The first 8 bytes of a text, padded with zeros, as a number: numbers compare as the texts do.
inline std::uint64_t beginningOf(const unsigned char* bytes, std::size_t size) {
  std::uint64_t beginning = 0;
  if (size >= sizeof beginning) {
    beginning = loadPacked<std::uint64_t>(bytes);
  } else if (size >= 4) {
    const std::uint64_t end = loadPacked<std::uint32_t>(bytes + size - 4);
    beginning = loadPacked<std::uint32_t>(bytes) | end << (8 * (size - 4));
  } else if (size > 0) {
    beginning = bytes[0] | std::uint64_t{bytes[size / 2]} << (8 * (size / 2)) |
                std::uint64_t{bytes[size - 1]} << (8 * (size - 1));
  }
  return __builtin_bswap64(beginning);
}

constexpr std::size_t byteCountOf(std::uint32_t length) {
  return length == kNullLength ? 0 : length;
}

}  // namespace kelvarin
