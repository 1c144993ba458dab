// Whole numbers of up to 64 bits, cut into 7-bit groups so that small ones take a byte.
//
// Used by the encodings of texts for what they say once, such as a base or a count.
// Layout: docs/gel-format.md, "Integers".
// Errors: a read returns false where the bytes end or have more than 64 bits.
#pragma once

#include "columnar/codecs/byte_buffer.h"

namespace kelvarin {

inline void appendShortNumber(std::uint64_t number, ByteBuffer& out) {
  for (; number >= 0x80; number >>= 7) {
    out.put(static_cast<std::uint8_t>(number | 0x80));
  }
  out.put(static_cast<std::uint8_t>(number));
}

constexpr std::size_t shortNumberSize(std::uint64_t number) {
  std::size_t size = 1;
  for (; number >= 0x80; number >>= 7) {
    ++size;
  }
  return size;
}

[[nodiscard]] inline bool readShortNumber(ByteReader& reader, std::uint64_t& number) {
  constexpr int kBits = 64;
  number = 0;
  for (int shift = 0; shift < kBits; shift += 7) {
    std::uint8_t group = 0;
    if (!reader.read(group) || (shift + 7 > kBits && (group & 0x7F) >> (kBits - shift) != 0)) {
      return false;
    }
    number |= std::uint64_t{group & 0x7Fu} << shift;
    if (group < 0x80) {
      return true;
    }
  }
  return false;
}

}  // namespace kelvarin
