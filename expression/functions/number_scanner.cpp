#include "expression/functions/number_scanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

#include "base/null_number.h"

namespace kelvarin {

namespace {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isSign(char c) {
  return c == '+' || c == '-';
}
// With an exponent or a decimal comma.
constexpr bool mayGoOn(char c) {
  return c == 'e' || c == 'E' || c == ',';
}

struct DecimalAtBegin {
  double value = 0.0;
  std::size_t size = 0;  // 0: there is none
};

class Scanner {
 public:
  Scanner(std::string_view text, NumberForm form) : m_text(text), m_form(form) {}

  // The end of the number that starts at `start`; `start` itself when there is none.
  std::size_t endOfNumber(std::size_t start) const {
    const std::size_t first = isSignAt(start) ? start + 1 : start;
    const std::size_t end = endOfDigits(first);
    if (m_form == NumberForm::whole) {
      return end > first ? end : start;
    }
    const std::size_t fractionEnd = endOfFraction(end, end > first);
    const bool hasDigit = fractionEnd > first;
    return hasDigit ? endOfExponent(fractionEnd) : start;
  }

 private:
  bool isAt(std::size_t i, char c) const { return i < m_text.size() && m_text[i] == c; }
  bool isDigitAt(std::size_t i) const { return i < m_text.size() && isDigit(m_text[i]); }
  bool isSignAt(std::size_t i) const { return i < m_text.size() && isSign(m_text[i]); }

  std::size_t endOfDigits(std::size_t i) const {
    while (isDigitAt(i)) {
      ++i;
    }
    return i;
  }

  std::size_t endOfFraction(std::size_t mark, bool hasWholePart) const {
    const std::size_t end = endOfDigits(mark + 1);
    const bool hasDigits = isDigitAt(mark + 1);
    if (isAt(mark, '.')) {
      return hasWholePart || hasDigits ? end : mark;
    }
    const bool isFollowedByPoint = isAt(end, '.') && isDigitAt(end + 1);
    return isAt(mark, ',') && hasWholePart && hasDigits && !isFollowedByPoint ? end : mark;
  }

  std::size_t endOfExponent(std::size_t mark) const {
    if (!isAt(mark, 'e') && !isAt(mark, 'E')) {
      return mark;
    }
    const std::size_t first = isSignAt(mark + 1) ? mark + 2 : mark + 1;
    const std::size_t end = endOfDigits(first);
    return end > first ? end : mark;
  }

  std::string_view m_text;
  NumberForm m_form;
};

// Whether a number beyond the range of doubles is too large rather than too small.
bool isTooLarge(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, mark);
  const auto point = static_cast<long long>(std::min(digits.find('.'), digits.size()));
  const auto firstDigit = static_cast<long long>(digits.find_first_of("123456789"));
  std::string_view exponentDigits = number.substr(std::min(mark + 1, number.size()));
  if (exponentDigits.starts_with('+')) {
    exponentDigits.remove_prefix(1);
  }
  long long exponent = 0;
  const auto parsed = std::from_chars(exponentDigits.data(),
                                      exponentDigits.data() + exponentDigits.size(), exponent);
  if (parsed.ec == std::errc::result_out_of_range) {
    return !exponentDigits.starts_with('-');
  }
  return exponent > firstDigit - point;
}

}  // namespace

std::optional<std::string_view> findNumber(std::string_view text, NumberForm form) {
  const Scanner scanner(text, form);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = scanner.endOfNumber(i);
    if (end > i) {
      return text.substr(i, end - i);
    }
  }
  return std::nullopt;
}

bool isWholeTextNumber(std::string_view text, NumberForm form) {
  return !text.empty() && Scanner(text, form).endOfNumber(0) == text.size();
}

namespace {

// What the text begins with: digits with a minus and a point where they may be.
// Exact, since whole numbers of 15 digits and powers of ten up to 10^15 are doubles, and a division
// rounds once.
DecimalAtBegin decimalAtBegin(std::string_view text) {
  static constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr std::ptrdiff_t kMaxDigits = std::size(kPowers) - 1;
  const char* const end = text.data() + text.size();
  const bool isNegative = text.starts_with('-');
  const char* next = text.data() + (isNegative ? 1 : 0);
  std::uint64_t whole = 0;
  const auto takeDigits = [&] {
    const char* const first = next;
    for (; next != end && isDigit(*next); ++next) {
      whole = 10 * whole + static_cast<std::uint64_t>(*next - '0');
    }
    return next - first;
  };
  const std::ptrdiff_t digits = takeDigits();
  std::ptrdiff_t decimals = 0;
  if (digits > 0 && next != end && *next == '.') {
    ++next;
    decimals = takeDigits();
  }
  if (digits == 0 || digits + decimals > kMaxDigits) {
    return {};
  }
  const double magnitude = static_cast<double>(whole) / kPowers[decimals];
  return {isNegative ? -magnitude : magnitude, static_cast<std::size_t>(next - text.data())};
}

}  // namespace

std::optional<double> plainDecimal(std::string_view text) {
  const DecimalAtBegin decimal = decimalAtBegin(text);
  const bool isWhole = decimal.size == text.size() && !text.empty();
  return isWhole ? std::optional(decimal.value) : std::nullopt;
}

double numberIn(std::string_view text) {
  const DecimalAtBegin decimal = decimalAtBegin(text);
  if (decimal.size > 0 && (decimal.size == text.size() || !mayGoOn(text[decimal.size]))) {
    return decimal.value;
  }
  const std::optional<std::string_view> number = findNumber(text, NumberForm::real);
  return number ? valueOfNumber(*number) : kNullNumber;
}

double valueOfNumber(std::string_view number) {
  if (const std::optional<double> plain = plainDecimal(number)) {
    return *plain;
  }
  std::string digits(number.starts_with('+') ? number.substr(1) : number);
  std::replace(digits.begin(), digits.end(), ',', '.');
  double value = 0.0;
  const char* const end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, value).ec == std::errc::result_out_of_range) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return std::copysign(isTooLarge(digits) ? infinity : 0.0, digits.front() == '-' ? -1.0 : 1.0);
  }
  return value;
}

}  // namespace kelvarin
