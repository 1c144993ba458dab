// Spreads the bits of a number over all 64, so that numbers that are alike are so no more.
//
// Different numbers stay different.
#pragma once

#include <cstdint>

namespace kelvarin {

constexpr std::uint64_t mixedBits(std::uint64_t bits) {
  bits += 0x9E3779B97F4A7C15u;
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
  return bits ^ (bits >> 31);
}

}  // namespace kelvarin
