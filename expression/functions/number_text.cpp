// Numbers to texts and back, and tests for texts that are numbers.

#include <charconv>
#include <cmath>
#include <cstdint>

#include <QByteArray>

#include "expression/functions/number_scanner.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

using Arguments = std::span<const FunctionArgument>;
using Text = std::optional<std::string>;

// kept: only the engine's own NaN is called nan, every other goes by its sign.
const char* wordOfSpecial(double x) {
  if (std::bit_cast<std::uint64_t>(x) == kNotANumberBits) {
    return "nan";
  }
  return std::signbit(x) ? "-inf" : "inf";
}

// As printf writes %g, but never with the decimal comma of the process's locale.
ColumnText textOfReal(TextArena& arena, double x) {
  if (!isFiniteNumber(x)) {
    return ColumnText(wordOfSpecial(x));
  }
  constexpr int significantDigits = 6;
  constexpr std::size_t kLongest = 32;
  char* digits = arena.allocate(kLongest);
  const auto end =
      std::to_chars(digits, digits + kLongest, x, std::chars_format::general, significantDigits);
  const auto size = static_cast<std::size_t>(end.ptr - digits);
  arena.shrink(kLongest - size);
  return ColumnText({digits, size});
}

ColumnText textOfWhole(TextArena& arena, double x) {
  if (!isFiniteNumber(x)) {
    return ColumnText(wordOfSpecial(x));
  }
  const double whole = std::trunc(x) + 0.0;  // a zero without a sign
  constexpr double kEndOfIntegers = 0x1p63;
  constexpr std::size_t kLongest = 400;  // the largest double has 309 digits
  char* digits = arena.allocate(kLongest);
  const auto end =
      std::fabs(whole) < kEndOfIntegers
          ? std::to_chars(digits, digits + kLongest, static_cast<std::int64_t>(whole))
          : std::to_chars(digits, digits + kLongest, whole, std::chars_format::fixed, 0);
  const auto size = static_cast<std::size_t>(end.ptr - digits);
  arena.shrink(kLongest - size);
  return ColumnText({digits, size});
}

// Null for what is below zero. Dividing by 16 is exact from 2^64 on.
Text hexadecimal(double x) {
  if (!isFiniteNumber(x)) {
    return wordOfSpecial(x);
  }
  if (x <= -1.0) {
    return std::nullopt;
  }
  double whole = std::trunc(x);
  std::size_t zeros = 0;
  for (; whole >= 0x1p64; whole /= 16) {
    ++zeros;
  }
  char digits[17];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, static_cast<std::uint64_t>(whole), 16);
  return std::string(digits, end.ptr) + std::string(zeros, '0');
}

double numberInText(std::string_view text) {
  const std::optional<std::string_view> number = findNumber(text, NumberForm::real);
  return number ? valueOfNumber(*number) : kNullNumber;
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

// Two digits a character of Latin-1.
QString textOfHexadecimal(std::string_view text) {
  if (text.empty()) {
    return QStringLiteral("");
  }
  if (text.size() % 2 != 0 || !isHexadecimal(text)) {
    return {};
  }
  const QByteArrayView digits(text.data(), static_cast<qsizetype>(text.size()));
  return QString::fromLatin1(QByteArray::fromHex(digits.toByteArray()));
}

// What is no text passes, and so does the null text.
template <NumberForm form>
void containsNumber(FunctionContext&, Arguments arguments, FunctionResult& result) {
  const FunctionArgument& x = arguments[0];
  setResult(result, !x.isText() || x.isNull() || findNumber(x.text(), form).has_value());
}

template <NumberForm form>
void isNumber(FunctionContext&, Arguments arguments, FunctionResult& result) {
  const FunctionArgument& x = arguments[0];
  setResult(result, !x.isText() || x.isNull() || isWholeTextNumber(x.text(), form));
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"ftoa", 1, kInString, kText, valueBodies<textOfReal>,
     "ftoa(x) - convert x as a floating point number to a string"},
    {"itoa", 1, kInString, kText, valueBodies<textOfWhole>,
     "itoa(x) - convert x as an int to a string"},
    {"atof", 1, kInString, kNumber, valueBodies<numberInText>,
     "atof(x) - convert x as a string to a double"},
    {"htof", 1, kInString, kNumber, valueBodies<numberOfHexadecimal>,
     "htof(x) - convert x as a hexadecimal string to a double"},
    {"ftoh", 1, kInString, kText, valueBody<hexadecimal>,
     "ftoh(x) - convert x as a positive integer number to a hexadecimal string"},
    {"htoa", 1, kInString, kText, valueBody<textOfHexadecimal>,
     "htoa(x) - convert x as a hexadecimal string to a latin1 string"},
    {"isNumber", 1, kInString, kTest, containsNumber<NumberForm::real>,
     "isNumber(x) - test if the x string contains a number"},
    {"isInteger", 1, kInString, kTest, containsNumber<NumberForm::whole>,
     "isInteger(x) - test if the x string contains an integer number"},
    {"isNumberStrict", 1, kInString, kTest, isNumber<NumberForm::real>,
     "isNumberStrict(x) - test if the x string is a number"},
    {"isIntegerStrict", 1, kInString, kTest, isNumber<NumberForm::whole>,
     "isIntegerStrict(x) - test if the x string is an integer number"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> numberTexts() {
  return kLines;
}

}  // namespace kelvarin
