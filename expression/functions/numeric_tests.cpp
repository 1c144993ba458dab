// Tests for missing and special numbers, and the choices that rest on them.
//
// A null is found by its bits and passes through every function that does not ask for it.

#include <algorithm>
#include <cstddef>

#include "expression/functions/text_bodies.h"
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

// The same for columns.

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

double zeroOfText(const ColumnText&) {
  return 0.0;
}

// Of two columns of one type the rows of the first where `test` is true of the text or number.
template <typename Value, typename Test>
void chooseRows(const Value* first, const Value* second, std::size_t rows, Value* results,
                Test isFirst) {
  for (std::size_t row = 0; row < rows; ++row) {
    results[row] = isFirst(row) ? first[row] : second[row];
  }
}

// The argument `ofMissing` where the first one is missing, else the argument `otherwise`.
template <bool (*isMissing)(double), std::size_t ofMissing, std::size_t otherwise>
std::size_t chosenColumns(const ColumnCall& call) {
  const ColumnArgument& asked = call.arguments[0];
  const ColumnArgument& first = call.arguments[ofMissing];
  const ColumnArgument& second = call.arguments[otherwise];
  const auto choose = [&](auto isFirst) {
    if (call.texts != nullptr) {
      chooseRows(first.texts, second.texts, call.rows, call.texts, isFirst);
    } else {
      chooseRows(first.numbers, second.numbers, call.rows, call.numbers, isFirst);
    }
  };
  if (asked.texts != nullptr) {
    choose([&](std::size_t row) { return asked.texts[row].isNull(); });
  } else {
    choose([&](std::size_t row) { return isMissing(asked.numbers[row]); });
  }
  return call.rows;
}

bool isNanNumber(double x) {
  return std::isnan(x);
}
bool isNotFinite(double x) {
  return !isFiniteNumber(x);
}

template <bool (*isMissing)(double)>
constexpr ColumnBody kSecondIf{chosenColumns<isMissing, 1, 0>};
template <bool (*isMissing)(double)>
constexpr ColumnBody kThirdIf{chosenColumns<isMissing, 2, 1>};

constexpr const char* kIsNullHelp = "isNull(x) - test if x is null";

// clang-format off
constexpr FunctionLine kLines[] = {
    // kept: native code knows the null test under this spelling only.
    {"isNuLL", 1, kInNative, kTest, {isNull, Intrinsic::isNull},
     kIsNullHelp},
    {"isNull", 1, kFastAndString, kTest,
     {isNull, isNullOfValue, kNumberOfText<isNullText>},
     kIsNullHelp},
    {"isNan", 1, kInAll, kTest, {isNan, zeroOfValue, kNumberOfText<zeroOfText>, Intrinsic::isNan},
     "isNan(x) - test if x is nan"},
    {"isFinite", 1, kInAll, kTest,
     {isFinite, zeroOfValue, kNumberOfText<zeroOfText>, Intrinsic::isFinite},
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
    {"nvl", 2, kInAll, kArgument, {nvl, nvlOfValues, kSecondIf<isNullNumber>, Intrinsic::nvl},
     "nvl(a,b) - if a is null return b, otherwise return a"},
    {"nvl2", 3, kInAll, kArgument, {nvl2, nvl2OfValues, kThirdIf<isNullNumber>, Intrinsic::nvl2},
     "nvl2(a,b,c) - if a is null return c, otherwise return b"},
    {"nanvl", 2, kInAll, kArgument,
     {nanvl, nanvlOfValues, kSecondIf<isNanNumber>, Intrinsic::nanvl},
     "nanvl(a,b) - if a is nan return b, otherwise return a"},
    {"nanvl2", 3, kInAll, kArgument,
     {nanvl2, nanvl2OfValues, kThirdIf<isNanNumber>, Intrinsic::nanvl2},
     "nanvl2(a,b,c) -  if a is nan return c, otherwise return b"},
    {"finitevl", 2, kInAll, kArgument,
     {finitevl, finitevlOfValues, kSecondIf<isNotFinite>, Intrinsic::finitevl},
     "finitevl(a,b) - if a is finite return a, otherwise return b"},
    {"finitevl2", 3, kInAll, kArgument,
     {finitevl2, finitevl2OfValues, kThirdIf<isNotFinite>, Intrinsic::finitevl2},
     "finitevl2(a,b,c) - if a is finite return b, otherwise return c"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numericTests() {
  return kLines;
}

}  // namespace kelvarin
