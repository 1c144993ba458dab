// Rounding to whole numbers, to decimal digits and to multiples.
//
// Digits are counted after the point; negative ones round to tens, hundreds and so on. From 17
// digits on a double has nothing left to round.

#include <array>
#include <cmath>

#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

constexpr int kLargestPower = 308;
constexpr double kMaxDigits = 16.0;

// A literal a power: a product of tens would be off in the last bit from 10^23 on.
// clang-format off
#define KELVARIN_TEN_POWERS(t)                                \
  1e##t##0, 1e##t##1, 1e##t##2, 1e##t##3, 1e##t##4, 1e##t##5, \
  1e##t##6, 1e##t##7, 1e##t##8, 1e##t##9
#define KELVARIN_HUNDRED_POWERS(h)                                                   \
  KELVARIN_TEN_POWERS(h##0), KELVARIN_TEN_POWERS(h##1), KELVARIN_TEN_POWERS(h##2),   \
  KELVARIN_TEN_POWERS(h##3), KELVARIN_TEN_POWERS(h##4), KELVARIN_TEN_POWERS(h##5),   \
  KELVARIN_TEN_POWERS(h##6), KELVARIN_TEN_POWERS(h##7), KELVARIN_TEN_POWERS(h##8),   \
  KELVARIN_TEN_POWERS(h##9)

constexpr std::array<double, kLargestPower + 1> kPowersOfTen = {
    KELVARIN_HUNDRED_POWERS(0), KELVARIN_HUNDRED_POWERS(1), KELVARIN_HUNDRED_POWERS(2),
    1e300, 1e301, 1e302, 1e303, 1e304, 1e305, 1e306, 1e307, 1e308};
// clang-format on

#undef KELVARIN_HUNDRED_POWERS
#undef KELVARIN_TEN_POWERS

using ToWhole = double (*)(double);

// Half away from zero. What does not fit into 64 bits has no fraction to round.
double toNearest(double value) {
  constexpr double limit = 0x1p63;
  const double shifted = value < 0 ? value - 0.5 : value + 0.5;
  if (!(shifted > -limit && shifted < limit)) {
    return value;
  }
  return static_cast<double>(static_cast<long long>(shifted));
}

double awayFromZero(double value) {
  return value >= 0 ? std::ceil(value) : std::floor(value);
}
double towardZero(double value) {
  return value > 0 ? std::floor(value) : std::ceil(value);
}

// `beyond` is the result when the digits stand left of every number.
template <ToWhole toWhole>
double roundToDigits(double x, double digits, double beyond) {
  if (isNullNumber(x) || isNullNumber(digits)) {
    return kNullNumber;
  }
  if (std::isnan(digits)) {
    return digits;
  }
  if (digits > kMaxDigits) {
    return x;
  }
  const double power = std::trunc(std::abs(digits));
  if (digits >= 0) {
    const double scale = kPowersOfTen[static_cast<std::size_t>(power)];
    const double scaled = x * scale;
    return isFiniteNumber(scaled) ? toWhole(scaled) / scale : x;
  }
  if (power > kLargestPower) {
    return beyond;
  }
  const double scale = kPowersOfTen[static_cast<std::size_t>(power)];
  return toWhole(x / scale) * scale;
}

double roundDigits(double x, double digits) {
  return roundToDigits<toNearest>(x, digits, 0.0);
}
double roundUp(double x, double digits) {
  return roundToDigits<awayFromZero>(x, digits, kNullNumber);
}
double roundDown(double x, double digits) {
  return roundToDigits<towardZero>(x, digits, 0.0);
}
double roundWhole(double x) {
  return roundDigits(x, 0.0);
}

double ceiling(double x) {
  return isNullNumber(x) ? kNullNumber : std::ceil(x);
}
double floorWhole(double x) {
  return isNullNumber(x) ? kNullNumber : std::floor(x);
}

double floorToMultiple(double x, double y) {
  if (isNullNumber(x) || isNullNumber(y)) {
    return kNullNumber;
  }
  const double quotient = x / y;
  return x - (quotient - std::floor(quotient)) * y;
}

constexpr const char* kRoundUpHelp =
    "roundUp(x,d) - rounds up x to a specified number of digits d.";
constexpr const char* kRoundDownHelp =
    "roundDown(x,d) - rounds down x to a specified number of digits d.";

// clang-format off
constexpr FunctionLine kLines[] = {
    {"ceil", 1, kFastAndString, kNumber, ceiling,
     "ceil(x) - Returns the smallest integral value that is not less than x (round up)."},
    {"floor", 1, kFastAndString, kNumber, floorWhole,
     "floor(x) - Returns the largest integral value that is not greater than x (round down)."},
    {"floor2", 2, kInAll, kNumber, {floorToMultiple, Intrinsic::floor2},
     "floor2(x,y) - Returns the largest multiple of y lower or equal to x"},
    {"round", 1, kFastAndString, kNumber, roundWhole,
     "round(x) - round to closest integer."},
    // kept: the help text names the function of one digit argument.
    {"round2", 2, kFastAndString, kNumber, roundDigits,
     "round(x,d) - rounds x to a specified number of digits d."},
    {"roundUp", 2, kFastAndString, kNumber, roundUp,
     kRoundUpHelp},
    {"roundUP", 2, kFastAndString, kNumber, roundUp,
     kRoundUpHelp},
    {"roundup", 2, kFastAndString, kNumber, roundUp,
     kRoundUpHelp},
    {"roundDown", 2, kFastAndString, kNumber, roundDown,
     kRoundDownHelp},
    {"roundDOWN", 2, kFastAndString, kNumber, roundDown,
     kRoundDownHelp},
    {"rounddown", 2, kFastAndString, kNumber, roundDown,
     kRoundDownHelp},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> rounding() {
  return kLines;
}

}  // namespace kelvarin
