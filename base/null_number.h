// The missing value of a number column and the other reserved bit patterns of doubles.
//
// A number is missing when its 64 bits are all set, and only then. The pattern is a NaN, so that a
// floating-point comparison never finds it.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kelvarin {

inline constexpr std::uint64_t kNullNumberBits = 0xFFFFFFFFFFFFFFFFull;
inline constexpr std::uint64_t kNotANumberBits = 0xFFF8000000000000ull;

inline constexpr double kNullNumber = std::bit_cast<double>(kNullNumberBits);
inline constexpr double kNotANumber = std::bit_cast<double>(kNotANumberBits);
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr bool isNullNumber(double value) {
  return std::bit_cast<std::uint64_t>(value) == kNullNumberBits;
}

// Distinguishes NaNs, and zeros of either sign.
constexpr bool hasSameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// True when all exponent bits are set neither for an infinity nor for a NaN.
constexpr bool isFiniteNumber(double value) {
  constexpr std::uint64_t exponent = 0x7FF0000000000000ull;
  return (std::bit_cast<std::uint64_t>(value) & exponent) != exponent;
}

}  // namespace kelvarin
