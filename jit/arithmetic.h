// The meaning of every operation on doubles, down to the bits of a NaN.
//
// An operation on NaNs returns the first operand that is one, made quiet; an operation that makes a
// NaN out of numbers returns the engine's own. A sign changes no NaN, so that a missing value stays
// missing. The processor does this for machine code; here it is spelled out, since a C++ compiler
// may swap the operands of a sum or a product.
// Used by the reference evaluator and for constants.
#pragma once

#include <cmath>

#include "base/null_number.h"

namespace kelvarin::jit {

inline double quietNan(double nan) {
  constexpr std::uint64_t quiet = 0x0008000000000000ull;
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(nan) | quiet);
}

// `result` of an operation on a and b, with the right NaN in place of any.
inline double withFirstNan(double result, double a, double b) {
  if (!std::isnan(result)) {
    return result;
  }
  if (std::isnan(a)) {
    return quietNan(a);
  }
  return std::isnan(b) ? quietNan(b) : kNotANumber;
}

inline double add(double a, double b) {
  return withFirstNan(a + b, a, b);
}
inline double subtract(double a, double b) {
  return withFirstNan(a - b, a, b);
}
inline double multiply(double a, double b) {
  return withFirstNan(a * b, a, b);
}
inline double divide(double a, double b) {
  return withFirstNan(a / b, a, b);
}

inline double negate(double x) {
  return std::isnan(x) ? x : -x;
}
inline double absolute(double x) {
  return x < 0.0 ? -x : x;
}
inline double squareRoot(double x) {
  return withFirstNan(std::sqrt(x), x, x);
}
inline double roundDown(double x) {
  return std::isnan(x) ? quietNan(x) : std::floor(x);
}
inline double truncate(double x) {
  return std::isnan(x) ? quietNan(x) : std::trunc(x);
}

inline double smaller(double x, double y) {
  return x < y ? x : y;
}
inline double larger(double x, double y) {
  return x > y ? x : y;
}

// What a condition makes of a number; a NaN is true.
inline bool isTruth(double x) {
  return x != 0.0;
}
inline double numberOf(bool truth) {
  return truth ? 1.0 : 0.0;
}

// `pow`: the C library's, but null where that makes another NaN of a null, as of null^5. What does
// not depend on the null, null^0 and 1^null, is 1.
double raised(double base, double exponent);
// `^`: the exponents 2, 3 and 4 are products from left to right, all else is raised().
double power(double base, double exponent);

}  // namespace kelvarin::jit
