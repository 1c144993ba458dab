#include "expression/functions/number_scanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

namespace kelvarin {

namespace {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isSign(char c) {
  return c == '+' || c == '-';
}

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

// Exact, since whole numbers of 15 digits and powers of ten up to 10^15 are doubles, and a division
// rounds once.
std::optional<double> plainDecimal(std::string_view text) {
  static constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr std::size_t kMaxDigits = std::size(kPowers) - 1;
  const bool isNegative = text.starts_with('-');
  text.remove_prefix(isNegative ? 1 : 0);
  if (text.empty() || text.size() > kMaxDigits + 1 || !isDigit(text.front()) ||
      !isDigit(text.back())) {
    return std::nullopt;
  }
  std::uint64_t whole = 0;
  std::size_t point = text.size();  // its index, or the end
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isDigit(text[i])) {
      whole = 10 * whole + static_cast<std::uint64_t>(text[i] - '0');
    } else if (text[i] == '.' && point == text.size()) {
      point = i;
    } else {
      return std::nullopt;
    }
  }
  const std::size_t decimals = point == text.size() ? 0 : text.size() - point - 1;
  if (decimals == 0 && text.size() > kMaxDigits) {
    return std::nullopt;
  }
  const double magnitude = static_cast<double>(whole) / kPowers[decimals];
  return isNegative ? -magnitude : magnitude;
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
