// Tests for missing and special numbers, and the choices that rest on them.
//
// A null is found by its bits and passes through every function that does not ask for it.

#include <algorithm>
#include <cstddef>

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
  result.setNumber(arguments[0].isNull() ? 1.0 : 0.0);
}

void isMissingOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setNumber(arguments[0].text().empty() ? 1.0 : 0.0);
}

void isTrueOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setNumber(isTrueValue(arguments[0]) ? 1.0 : 0.0);
}

void notOfValue(FunctionContext&, Arguments arguments, FunctionResult& result) {
  const bool isNullArgument = arguments[0].isNull();
  result.setNumber(isNullArgument ? kNullNumber : isTrueValue(arguments[0]) ? 0.0 : 1.0);
}

// A text is no number, so it is none of the special ones either.
void zeroOfValue(FunctionContext&, Arguments, FunctionResult& result) {
  result.setNumber(0.0);
}

void nvlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(arguments[0].isNull() ? 1 : 0);
}

void nvl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(arguments[0].isNull() ? 2 : 1);
}

void nanvlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(isNanValue(arguments[0]) ? 1 : 0);
}

void nanvl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(isNanValue(arguments[0]) ? 2 : 1);
}

void finitevlOfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(isFiniteValue(arguments[0]) ? 0 : 1);
}

void finitevl2OfValues(FunctionContext&, Arguments arguments, FunctionResult& result) {
  result.setArgument(isFiniteValue(arguments[0]) ? 1 : 2);
}

// The same for columns of texts alone.

template <double (*valueOf)(const ColumnText&)>
std::size_t numberColumns(const ColumnCall& call) {
  const ColumnText* texts = call.arguments[0].texts;
  std::transform(texts, texts + call.rows, call.numbers, valueOf);
  return call.rows;
}

template <double (*valueOf)(const ColumnText&)>
constexpr ColumnBody kNumberOfText{numberColumns<valueOf>, 0b1};

double isNullText(const ColumnText& text) {
  return text.isNull() ? 1.0 : 0.0;
}
double isEmptyText(const ColumnText& text) {
  return text.view().empty() ? 1.0 : 0.0;
}
double isTrueText(const ColumnText& text) {
  return text.view().empty() ? 0.0 : 1.0;
}
double notText(const ColumnText& text) {
  return text.isNull() ? kNullNumber : isEmptyText(text);
}

// The argument `ofNull` where the first one is null, else the argument `otherwise`.
template <std::size_t ofNull, std::size_t otherwise>
std::size_t chosenColumns(const ColumnCall& call) {
  const ColumnText* first = call.arguments[0].texts;
  const ColumnText* chosen[] = {call.arguments[otherwise].texts, call.arguments[ofNull].texts};
  for (std::size_t row = 0; row < call.rows; ++row) {
    call.texts[row] = chosen[first[row].isNull() ? 1 : 0][row];
  }
  return call.rows;
}

constexpr ColumnBody kSecondForNull{chosenColumns<1, 0>, 0b11};
constexpr ColumnBody kThirdForNull{chosenColumns<2, 1>, 0b111};

constexpr const char* kIsNullHelp = "isNull(x) - test if x is null";

// clang-format off
constexpr FunctionLine kLines[] = {
    // kept: native code knows the null test under this spelling only.
    {"isNuLL", 1, kInNative, kTest, {isNull, Intrinsic::isNull},
     kIsNullHelp},
    {"isNull", 1, kFastAndString, kTest,
     {isNull, isNullOfValue, kNumberOfText<isNullText>},
     kIsNullHelp},
    {"isNan", 1, kInAll, kTest, {isNan, zeroOfValue, Intrinsic::isNan},
     "isNan(x) - test if x is nan"},
    {"isFinite", 1, kInAll, kTest, {isFinite, zeroOfValue, Intrinsic::isFinite},
     "isFinite(x) - test if x is finite"},
    // kept: the spelling of the help text.
    {"isMissing", 1, kInAll, kTest,
     {isNull, isMissingOfValue, kNumberOfText<isEmptyText>, Intrinsic::isNull},
     "isMising(x) - test if x is missing"},
    {"isTrue", 1, kInAll, kTest,
     {isTrue, isTrueOfValue, kNumberOfText<isTrueText>, Intrinsic::isTrue},
     "isTrue(x) - test if x is true"},
    {"not", 1, kInAll, kTest,
     {logicalNot, notOfValue, kNumberOfText<notText>, Intrinsic::logicalNot},
     "not(x) - boolean not"},
    {"sqr", 1, kInAll, kNumber, {square, Intrinsic::square},
     "sqr(x) - return x"},  // kept
    {"nvl", 2, kInAll, kArgument, {nvl, nvlOfValues, kSecondForNull, Intrinsic::nvl},
     "nvl(a,b) - if a is null return b, otherwise return a"},
    {"nvl2", 3, kInAll, kArgument, {nvl2, nvl2OfValues, kThirdForNull, Intrinsic::nvl2},
     "nvl2(a,b,c) - if a is null return c, otherwise return b"},
    {"nanvl", 2, kInAll, kArgument, {nanvl, nanvlOfValues, kSecondForNull, Intrinsic::nanvl},
     "nanvl(a,b) - if a is nan return b, otherwise return a"},
    {"nanvl2", 3, kInAll, kArgument, {nanvl2, nanvl2OfValues, kThirdForNull, Intrinsic::nanvl2},
     "nanvl2(a,b,c) -  if a is nan return c, otherwise return b"},
    {"finitevl", 2, kInAll, kArgument,
     {finitevl, finitevlOfValues, kSecondForNull, Intrinsic::finitevl},
     "finitevl(a,b) - if a is finite return a, otherwise return b"},
    {"finitevl2", 3, kInAll, kArgument,
     {finitevl2, finitevl2OfValues, kThirdForNull, Intrinsic::finitevl2},
     "finitevl2(a,b,c) - if a is finite return b, otherwise return c"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numericTests() {
  return kLines;
}

}  // namespace kelvarin
