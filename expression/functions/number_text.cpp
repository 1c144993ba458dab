// Numbers to texts and back, and tests for texts that are numbers.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "base/shortest_number.h"
#include "expression/functions/number_scanner.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

using Arguments = std::span<const FunctionArgument>;

// kept: only the engine's own NaN is called nan, every other goes by its sign.
const char* wordOfSpecial(double x) {
  if (std::bit_cast<std::uint64_t>(x) == kNotANumberBits) {
    return "nan";
  }
  return std::signbit(x) ? "-inf" : "inf";
}

// What was printed into the bytes that were allocated last.
ColumnText textUpTo(TextArena& arena, const char* begin, const char* end, std::size_t allocated) {
  const auto size = static_cast<std::size_t>(end - begin);
  arena.shrink(allocated - size);
  return ColumnText({begin, size});
}

// From 0.0001 to below 999999 as printf writes %g; nothing where the seventh digit and those behind
// it are, or nearly are, half of the sixth.
char* appendSixDigits(char* out, double magnitude) {
  static constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  static constexpr double kFirstOfDecimals[] = {1e5, 1e4, 1e3, 1e2, 1e1, 1e0, 1e-1, 1e-2, 1e-3};
  std::size_t decimals = 0;
  while (decimals < std::size(kFirstOfDecimals) && magnitude < kFirstOfDecimals[decimals]) {
    ++decimals;
  }
  const double scaled = magnitude * kPowers[decimals];
  auto digits = static_cast<std::uint64_t>(scaled);
  const double rest = scaled - static_cast<double>(digits) - 0.5;
  constexpr double kErrorOfProduct = 1e-9;
  if (std::fabs(rest) < kErrorOfProduct) {
    return nullptr;
  }
  digits += rest > 0.0 ? 1 : 0;
  const auto power = static_cast<std::uint64_t>(kPowers[decimals]);
  char* end = appendWhole(out, digits / power);
  std::uint64_t fraction = digits % power;
  if (fraction == 0) {
    return end;
  }
  *end++ = '.';
  // As many digits as `decimals`, without the zeros at the end.
  char* const first = end;
  std::memset(first, '0', decimals);
  for (char* digit = first + decimals; fraction != 0; fraction /= 10) {
    *--digit = static_cast<char>('0' + fraction % 10);
  }
  end = first + decimals;
  while (end[-1] == '0') {
    --end;
  }
  return end;
}

// As printf writes %g, but never with the decimal comma of the process's locale.
ColumnText textOfReal(TextArena& arena, double x) {
  if (!isFiniteNumber(x)) {
    return ColumnText(wordOfSpecial(x));
  }
  constexpr int significantDigits = 6;
  constexpr double kPlainBegin = 1e-4;
  constexpr double kPlainEnd = 999'999.0;
  char* const digits = arena.allocate(kLongestNumberText);
  char* end = nullptr;
  const double magnitude = std::fabs(x);
  if (magnitude >= kPlainBegin && magnitude < kPlainEnd) {
    *digits = '-';
    end = appendSixDigits(digits + (x < 0.0 ? 1 : 0), magnitude);
  }
  if (end == nullptr) {
    end = std::to_chars(digits, digits + kLongestNumberText, x, std::chars_format::general,
                        significantDigits)
              .ptr;
  }
  return textUpTo(arena, digits, end, kLongestNumberText);
}

ColumnText textOfWhole(TextArena& arena, double x) {
  if (!isFiniteNumber(x)) {
    return ColumnText(wordOfSpecial(x));
  }
  constexpr double kEndOfIntegers = 0x1p63;
  if (std::fabs(x) < kEndOfIntegers) {
    const auto whole = static_cast<std::int64_t>(x);
    char* const digits = arena.allocate(kLongestNumberText);
    *digits = '-';
    char* const end = appendWhole(digits + (whole < 0 ? 1 : 0),
                                  static_cast<std::uint64_t>(whole < 0 ? -whole : whole));
    return textUpTo(arena, digits, end, kLongestNumberText);
  }
  constexpr std::size_t kLongest = 400;  // the largest double has 309 digits
  char* const digits = arena.allocate(kLongest);
  char* const end =
      std::to_chars(digits, digits + kLongest, std::trunc(x), std::chars_format::fixed, 0).ptr;
  return textUpTo(arena, digits, end, kLongest);
}

// Null for what is below zero. Dividing by 16 is exact from 2^64 on.
ColumnText hexadecimal(TextArena& arena, double x) {
  if (!isFiniteNumber(x)) {
    return ColumnText(wordOfSpecial(x));
  }
  if (x <= -1.0) {
    return {};
  }
  double whole = std::trunc(x);
  std::size_t zeros = 0;
  for (; whole >= 0x1p64; whole /= 16) {
    ++zeros;
  }
  constexpr std::size_t kLongest = 272;  // the largest double has 256 digits
  char* const digits = arena.allocate(kLongest);
  char* const end =
      std::to_chars(digits, digits + kLongest, static_cast<std::uint64_t>(whole), 16).ptr;
  std::memset(end, '0', zeros);
  return textUpTo(arena, digits, end + zeros, kLongest);
}

int hexadecimalDigit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool isHexadecimal(std::string_view text) {
  for (const char c : text) {
    if (hexadecimalDigit(c) < 0) {
      return false;
    }
  }
  return !text.empty();
}

double numberOfHexadecimal(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
  }
  if (!isHexadecimal(text)) {
    return kNullNumber;
  }
  double value = 0.0;
  const auto result =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::hex);
  return result.ec == std::errc::result_out_of_range ? kInfinity : value;
}

// Two digits a character of Latin-1, which has two bytes at most.
ColumnText textOfHexadecimal(TextArena& arena, std::string_view text) {
  if (text.empty()) {
    return ColumnText("");
  }
  if (text.size() % 2 != 0 || !isHexadecimal(text)) {
    return {};
  }
  char* const bytes = arena.allocate(text.size());
  char* next = bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int code = hexadecimalDigit(text[i]) * 16 + hexadecimalDigit(text[i + 1]);
    next = appendLatin1(next, static_cast<unsigned char>(code));
  }
  return textUpTo(arena, bytes, next, text.size());
}

// What is no text passes, and so does the null text.

template <NumberForm form>
bool containsNumber(std::string_view text) {
  return findNumber(text, form).has_value();
}

template <NumberForm form>
bool isNumber(std::string_view text) {
  return isWholeTextNumber(text, form);
}

template <bool (*test)(std::string_view)>
void passingBody(FunctionContext&, Arguments arguments, FunctionResult& result) {
  const FunctionArgument& x = arguments[0];
  setResult(result, !x.isText() || x.isNull() || test(x.text()));
}

template <bool (*test)(std::string_view)>
double passingText(const ColumnText& text) {
  return text.isNull() || test(text.view()) ? 1.0 : 0.0;
}

template <bool (*test)(std::string_view)>
constexpr FunctionBody kPassingBodies{passingBody<test>, kNumberOfText<passingText<test>>};

// clang-format off
constexpr FunctionLine kLines[] = {
    {"ftoa", 1, kInString, kText, valueBodies<textOfReal>,
     "ftoa(x) - convert x as a floating point number to a string"},
    {"itoa", 1, kInString, kText, valueBodies<textOfWhole>,
     "itoa(x) - convert x as an int to a string"},
    {"atof", 1, kInString, kNumber, valueBodies<numberIn>,
     "atof(x) - convert x as a string to a double"},
    {"htof", 1, kInString, kNumber, valueBodies<numberOfHexadecimal>,
     "htof(x) - convert x as a hexadecimal string to a double"},
    {"ftoh", 1, kInString, kText, valueBodies<hexadecimal>,
     "ftoh(x) - convert x as a positive integer number to a hexadecimal string"},
    {"htoa", 1, kInString, kText, valueBodies<textOfHexadecimal>,
     "htoa(x) - convert x as a hexadecimal string to a latin1 string"},
    {"isNumber", 1, kInString, kTest, kPassingBodies<containsNumber<NumberForm::real>>,
     "isNumber(x) - test if the x string contains a number"},
    {"isInteger", 1, kInString, kTest, kPassingBodies<containsNumber<NumberForm::whole>>,
     "isInteger(x) - test if the x string contains an integer number"},
    {"isNumberStrict", 1, kInString, kTest, kPassingBodies<isNumber<NumberForm::real>>,
     "isNumberStrict(x) - test if the x string is a number"},
    {"isIntegerStrict", 1, kInString, kTest, kPassingBodies<isNumber<NumberForm::whole>>,
     "isIntegerStrict(x) - test if the x string is an integer number"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numberTexts() {
  return kLines;
}

}  // namespace kelvarin
