// Casts and operations on the bits of whole numbers, the same in the Fast and the String back-end.
//
// Operands are whole numbers below 2^53 in size; with anything else the result is the engine's NaN,
// and the first operand that is a NaN wins, so that a null stays a null. Shifts multiply and divide
// by powers of two, rounding down, and so keep the sign.
#pragma once

#include <cmath>
#include <cstdint>

#include "jit/arithmetic.h"

namespace kelvarin::bits {

inline bool isWhole(double x) {
  constexpr double end = 9007199254740992.0;
  return std::fabs(x) < end && std::trunc(x) == x;
}

template <typename Operation>
double onWholes(double x, double y, Operation operation) {
  if (isWhole(x) && isWhole(y)) {
    return operation(x, y);
  }
  return jit::withFirstNan(kNotANumber, x, y);
}

inline double bitAnd(double x, double y) {
  return onWholes(x, y, [](double a, double b) {
    return static_cast<double>(static_cast<std::int64_t>(a) & static_cast<std::int64_t>(b));
  });
}

inline double bitOr(double x, double y) {
  return onWholes(x, y, [](double a, double b) {
    return static_cast<double>(static_cast<std::int64_t>(a) | static_cast<std::int64_t>(b));
  });
}

// A shift by 2000 leaves the range of doubles anyway, and a negative one is no shift.
inline double scaled(double x, double count, int sign) {
  constexpr double maxBits = 2000.0;
  const int bits = static_cast<int>(std::fmin(count, maxBits));
  return count < 0.0 ? kNotANumber : std::ldexp(x, sign * bits);
}

inline double shiftLeft(double x, double count) {
  return onWholes(x, count, [](double a, double b) { return scaled(a, b, 1); });
}

inline double shiftRight(double x, double count) {
  return onWholes(x, count, [](double a, double b) { return std::floor(scaled(a, b, -1)); });
}

inline double toInteger(double x) {
  return jit::truncate(x);
}

inline double toFloat(double x) {
  return x;
}

}  // namespace kelvarin::bits
