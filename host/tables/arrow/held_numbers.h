// Which numbers of a file or a stream a number column can hold: doubles, of which one bit pattern
// means missing.
#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>

#include "base/null_number.h"

namespace kelvarin {

// A number that is there, never the bits that mean missing.
inline double presentNumber(double number) {
  return std::isnan(number) ? kNotANumber : number;
}

// False: no double is the integer.
template <typename Integer>
bool integerAsNumber(Integer integer, double& number) {
  number = static_cast<double>(integer);
  if constexpr (sizeof(Integer) < 8) {
    return true;
  }
  constexpr double kBeyond = std::signed_integral<Integer> ? 0x1p63 : 0x1p64;
  return number < kBeyond && static_cast<Integer>(number) == integer;
}

// Doubles hold all integers up to 2^53, and most columns have no others.
template <typename Integer>
bool areHeldByNumbers(const Integer* integers, std::int64_t count) {
  if constexpr (sizeof(Integer) < 8) {
    return true;
  }
  constexpr std::uint64_t kLargest = 1ull << 53;
  constexpr std::uint64_t kShift = std::signed_integral<Integer> ? kLargest : 0;
  std::uint64_t largest = 0;
  for (std::int64_t row = 0; row < count; ++row) {
    largest = std::max(largest, static_cast<std::uint64_t>(integers[row]) + kShift);
  }
  return largest <= kLargest + kShift;
}

}  // namespace kelvarin
