// Tests for missing and special numbers, and the choices that rest on them.
//
// A null is found by its bits and passes through every function that does not ask for it.

#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

double isNull(double x) {
  return isNullNumber(x) ? 1.0 : 0.0;
}

// The bits of the engine's own NaN and no other.
double isNan(double x) {
  return std::bit_cast<std::uint64_t>(x) == kNotANumberBits ? 1.0 : 0.0;
}

double isFinite(double x) {
  return isFiniteNumber(x) ? -1.0 : 0.0;
}

double isTrue(double x) {
  return x == 0.0 || isNullNumber(x) ? 0.0 : 1.0;
}

double logicalNot(double x) {
  if (isNullNumber(x)) {
    return kNullNumber;
  }
  return x == 0.0 ? 1.0 : 0.0;
}

double square(double x) {
  return x * x;
}

double nvl(double a, double b) {
  return isNullNumber(a) ? b : a;
}
double nvl2(double a, double b, double c) {
  return isNullNumber(a) ? c : b;
}
double nanvl(double a, double b) {
  return std::isnan(a) ? b : a;
}
double nanvl2(double a, double b, double c) {
  return std::isnan(a) ? c : b;
}
double finitevl(double a, double b) {
  return isFiniteNumber(a) ? a : b;
}
double finitevl2(double a, double b, double c) {
  return isFiniteNumber(a) ? b : c;
}

// The same for texts.

using Arguments = std::span<const FunctionArgument>;

bool isTrueValue(const FunctionArgument& x) {
  return x.isText() ? !x.text().empty() : isTrue(x.number()) != 0.0;
}

bool isNanValue(const FunctionArgument& x) {
  return x.isText() ? x.isNull() : std::isnan(x.number());
}

bool isFiniteValue(const FunctionArgument& x) {
  return x.isText() ? !x.isNull() : isFiniteNumber(x.number());
}

void isNullOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveNumber(arguments[0].isNull() ? 1.0 : 0.0);
}

void isMissingOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveNumber(arguments[0].text().empty() ? 1.0 : 0.0);
}

void isTrueOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveNumber(isTrueValue(arguments[0]) ? 1.0 : 0.0);
}

void notOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  const bool isNullArgument = arguments[0].isNull();
  result.giveNumber(isNullArgument ? kNullNumber : isTrueValue(arguments[0]) ? 0.0 : 1.0);
}

// A text is no number, so it is none of the special ones either.
void zeroOfValue(FunctionContext&, Arguments, FunctionResult& result) {
  result.giveNumber(0.0);
}

void nvlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(arguments[0].isNull() ? 1 : 0);
}

void nvl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(arguments[0].isNull() ? 2 : 1);
}

void nanvlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(isNanValue(arguments[0]) ? 1 : 0);
}

void nanvl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(isNanValue(arguments[0]) ? 2 : 1);
}

void finitevlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(isFiniteValue(arguments[0]) ? 0 : 1);
}

void finitevl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.giveArgument(isFiniteValue(arguments[0]) ? 1 : 2);
}

constexpr ResultKind kTest = ResultKind::test;
constexpr ResultKind kAny = ResultKind::any;

constexpr const char* kIsNullHelp = "isNull(x) - test if x is null";

constexpr FunctionLine kLines[] = {
    // kept: native code knows the null test under this spelling only.
    {"isNuLL", 1, kInNative, kTest, isNull, nullptr, kIsNullHelp},
    {"isNull", 1, kInFast | kInString, kTest, isNull, isNullOfValue, kIsNullHelp},
    {"isNan", 1, kInAll, kTest, isNan, zeroOfValue, "isNan(x) - test if x is nan"},
    {"isFinite", 1, kInAll, kTest, isFinite, zeroOfValue, "isFinite(x) - test if x is finite"},
    // kept: the spelling of the help text.
    {"isMissing", 1, kInAll, kTest, isNull, isMissingOfValue, "isMising(x) - test if x is missing"},
    {"isTrue", 1, kInAll, kTest, isTrue, isTrueOfValue, "isTrue(x) - test if x is true"},
    {"not", 1, kInAll, kTest, logicalNot, notOfValue, "not(x) - boolean not"},
    {"sqr", 1, kInAll, ResultKind::number, square, nullptr, "sqr(x) - return x"},  // kept
    {"nvl", 2, kInAll, kAny, nvl, nvlOfValues,
     "nvl(a,b) - if a is null return b, otherwise return a"},
    {"nvl2", 3, kInAll, kAny, nvl2, nvl2OfValues,
     "nvl2(a,b,c) - if a is null return c, otherwise return b"},
    {"nanvl", 2, kInAll, kAny, nanvl, nanvlOfValues,
     "nanvl(a,b) - if a is nan return b, otherwise return a"},
    {"nanvl2", 3, kInAll, kAny, nanvl2, nanvl2OfValues,
     "nanvl2(a,b,c) -  if a is nan return c, otherwise return b"},
    {"finitevl", 2, kInAll, kAny, finitevl, finitevlOfValues,
     "finitevl(a,b) - if a is finite return a, otherwise return b"},
    {"finitevl2", 3, kInAll, kAny, finitevl2, finitevl2OfValues,
     "finitevl2(a,b,c) - if a is finite return b, otherwise return c"},
};

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numericTests() {
  return kLines;
}

}  // namespace kelvarin
