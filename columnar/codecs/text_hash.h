// A hash of short texts, for tables that live as long as a block.
//
// Only its speed and spread matter, since it is never stored.
#pragma once

#include "base/byte_cursor.h"

namespace kelvarin {

inline std::uint64_t mixed(std::uint64_t left, std::uint64_t right) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(left) * right;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

inline std::uint64_t hashOfText(const unsigned char* bytes, std::size_t size) {
  constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15ull;
  constexpr std::uint64_t kSecond = 0xD1B54A32D192ED03ull;
  std::uint64_t hash = size * kSecond + kFirst;
  for (; size > 8; size -= 8, bytes += 8) {
    hash = mixed(hash ^ loadPacked<std::uint64_t>(bytes), kFirst);
  }
  std::uint64_t last = 0;
  if (size >= 4) {
    last = loadPacked<std::uint32_t>(bytes) |
           std::uint64_t{loadPacked<std::uint32_t>(bytes + size - 4)} << 32;
  } else if (size > 0) {
    last = bytes[0] | std::uint64_t{bytes[size / 2]} << 8 | std::uint64_t{bytes[size - 1]} << 16;
  }
  return mixed(hash ^ last, kSecond);
}

}  // namespace kelvarin
