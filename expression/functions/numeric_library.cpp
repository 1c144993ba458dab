// What the expression libraries bring of mathematics, where one lacks a function that another has
// or computes it in a way of its own: the same bodies for all.
//
// What is not here (sin, exp, sqrt, ...) is the C library's function in every back-end. A null
// stays a null: operations give the first of their operands that is a NaN, bit for bit.

#include <cmath>

#include "expression/functions/themes.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

// kept: whole numbers from halves upwards, so -2.5 becomes -2.
double rint(double x) {
  return jit::roundDown(jit::add(x, 0.5));
}

double sign(double x) {
  return x < 0.0 ? -1.0 : jit::numberOf(x > 0.0);
}

// Picks the double among the C library's overloads.
constexpr Number1 ofOne(Number1 body) {
  return body;
}
constexpr Number2 ofTwo(Number2 body) {
  return body;
}

using Numbers = std::span<const double>;

double sum(Numbers numbers) {
  double total = 0.0;
  for (const double number : numbers) {
    total = jit::add(total, number);
  }
  return total;
}

double average(Numbers numbers) {
  return jit::divide(sum(numbers), static_cast<double>(numbers.size()));
}

// A NaN is neither smaller nor larger than a number, so it stays where it stands first and is
// passed over elsewhere.
template <double (*choose)(double, double)>
double accumulate(Numbers numbers) {
  double chosen = numbers.front();
  for (const double number : numbers.subspan(1)) {
    chosen = choose(number, chosen);
  }
  return chosen;
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"abs", 1, kInAll, kNumber, {jit::absolute, Intrinsic::absolute},
     "abs(x) - absolute value of x"},
    {"sign", 1, kInAll, kNumber, {sign, Intrinsic::sign},
     "sign(x) - returns -1 for a negative x, 1 for a positive one, otherwise 0"},
    {"rint", 1, kInAll, kNumber, {rint, Intrinsic::rint},
     "rint(x) - round to closest integer, halves upwards"},
    {"trunc", 1, kInAll, kNumber, {jit::truncate, Intrinsic::truncate},
     "trunc(x) - the integer part of x, towards zero"},
    {"cbrt", 1, kInAll, kNumber, ofOne(std::cbrt),
     "cbrt(x) - cube root of x"},
    {"hypot", 2, kInAll, kNumber, ofTwo(std::hypot),
     "hypot(x,y) - square root of x^2+y^2"},
    {"fmod", 2, kInAll, kNumber, ofTwo(std::fmod),
     "fmod(x,y) - remainder of x/y with the sign of x; the same as x%y"},
    {"remainder", 2, kInAll, kNumber, ofTwo(std::remainder),
     "remainder(x,y) - x minus the multiple of y that is closest to it"},
    {"pow", 2, kInAll, kNumber, jit::raised,
     "pow(x,y) - x raised to the power of y"},
    {"log2", 1, kInAll, kNumber, ofOne(std::log2),
     "log2(x) - logarithm base 2"},
    {"asinh", 1, kInAll, kNumber, ofOne(std::asinh),
     "asinh(x) - inverse of sinh"},
    {"acosh", 1, kInAll, kNumber, ofOne(std::acosh),
     "acosh(x) - inverse of cosh"},
    {"atanh", 1, kInAll, kNumber, ofOne(std::atanh),
     "atanh(x) - inverse of tanh"},
    {"sum", kAnyCount, kInAll, kNumber, sum,
     "sum(x,y,z...) - sum of the numbers"},
    {"avg", kAnyCount, kInAll, kNumber, average,
     "avg(x,y,z...) - mean of the numbers"},
    {"min", kAnyCount, kInAll, kNumber, accumulate<jit::smaller>,
     "min(x,y,z...) - the smallest of the numbers"},
    {"max", kAnyCount, kInAll, kNumber, accumulate<jit::larger>,
     "max(x,y,z...) - the largest of the numbers"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numericLibrary() {
  return kLines;
}

}  // namespace kelvarin
