// The numbers and keys that the fields of a CSV file are. Blanks around are allowed.
#pragma once

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "base/null_number.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

inline std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

// A sign that the parsers of the standard library do not know.
inline std::string_view withoutPlus(std::string_view text) {
  const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return hasPlus ? text.substr(1) : text;
}

// Beyond the range of a double: infinity or (nearly) zero, as rounding has it.
inline double roundedOutOfRange(std::string_view text) {
  static const locale_t plainLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(std::string(text).c_str(), nullptr, plainLocale);
}

// Of the words, "nan", "inf" and "-inf" in any case are numbers.
inline bool parseNumber(std::string_view field, double& number) {
  std::string_view text = field;
  auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) [[unlikely]] {
    text = withoutPlus(withoutBlanks(field));
    result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ptr != text.data() + text.size() ||
        result.ec == std::errc::invalid_argument) {
      return false;
    }
    if (result.ec == std::errc::result_out_of_range) {
      number = roundedOutOfRange(text);
      return true;
    }
  }
  if (!isFiniteNumber(number)) [[unlikely]] {
    if (std::isnan(number)) {
      number = kNotANumber;
      return text.size() == 3;
    }
    return text.size() == (text.front() == '-' ? 4u : 3u);
  }
  return true;
}

// Numbers of at most eight bytes: digits, with a minus and a point where they may be. Exact, since
// whole numbers below 10^8 and powers of ten up to 10^7 are doubles and a division rounds once.
// False for everything else, and for digits after a leading zero if these are refused. The eight
// bytes before the end of `field` may be read, whatever its size.
template <bool refusesLeadingZeros = false>
[[gnu::always_inline]] inline bool parseShortDecimal(std::string_view field, double& number) {
  constexpr std::uint64_t kZeros = 0x3030303030303030u;
  constexpr std::uint64_t kPoints = 0x2E2E2E2E2E2E2E2Eu;
  constexpr std::uint64_t kLowBits = 0x0101010101010101u;
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  static constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
  static constexpr std::uint64_t kWholePowers[] = {1,      10,      100,       1000,
                                                   10'000, 100'000, 1'000'000, 10'000'000};
  if (field.empty() || field.size() > 8) {
    return false;
  }
  const bool isNegative = field.front() == '-';
  std::size_t digits = field.size() - (isNegative ? 1 : 0);
  if (digits == 0) {
    return false;
  }
  // The digits at the high end, zeros below.
  std::uint64_t bytes;
  std::memcpy(&bytes, field.data() + field.size() - 8, 8);
  const std::uint64_t present = ~std::uint64_t{0} << (64 - 8 * digits);
  bytes = (bytes & present) | (kZeros & ~present);
  std::size_t decimals = 0;
  const std::uint64_t other = bytes ^ kPoints;
  const std::uint64_t points = (other - kLowBits) & ~other & kHighBits;
  if (points != 0) {
    const int below = std::countr_zero(points) & ~7;  // bits below the point
    decimals = static_cast<std::size_t>(7 - below / 8);
    const std::uint64_t whole = bytes & ((std::uint64_t{1} << below) - 1);
    const std::uint64_t fraction = bytes & ((~std::uint64_t{0} << below) << 8);
    bytes = fraction | whole << 8 | '0';
    if (--digits == 0) {
      return false;
    }
  }
  if ((((bytes + 0x4646464646464646u) | (bytes - kZeros)) & kHighBits) != 0) {
    return false;
  }
  // Neighbours are joined to numbers of two, four and eight digits.
  bytes = (bytes & 0x0F0F0F0F0F0F0F0Fu) * 2561 >> 8;
  bytes = (bytes & 0x00FF00FF00FF00FFu) * 6553601 >> 16;
  bytes = (bytes & 0x0000FFFF0000FFFFu) * 42949672960001 >> 32;
  if constexpr (refusesLeadingZeros) {
    // By the value: fewer digits count than there are, and not for the sake of decimals.
    if (bytes < kWholePowers[digits - 1] && digits > decimals + 1) [[unlikely]] {
      return false;
    }
  }
  number = static_cast<double>(bytes);
  if (decimals > 0) {
    number /= kPowers[decimals];
  }
  number = isNegative ? -number : number;
  return true;
}

// How a number's text says more than the number it is read as.
enum class LostDigits {
  none,
  leadingZero,  // digits after a zero, as in postal codes
  wholePart,    // a whole part that no double holds, as in long identifiers
};

// Of a text that parseNumber() has read as `number`. With an exponent nothing counts as lost, nor
// do decimals.
LostDigits lostDigits(std::string_view field, double number);

// Quick, and true for every number that has lost digits and few others. The byte after `field` may
// be read.
inline bool mayHaveLostDigits(std::string_view field) {
  constexpr std::size_t kDigitsThatAreKept = 15;
  const char* digits = field.data() + (field[0] == '-' ? 1 : 0);
  const bool mayHaveLeadingZero = digits[0] == '0' && digits[1] >= '0' && digits[1] <= '9';
  // After blanks and the plus sign the digits begin elsewhere.
  const bool hasOtherStart = field[0] <= '+';
  // Most long numbers are decimals.
  const bool isLong = field.size() > kDigitsThatAreKept && field[1] != '.' && field[2] != '.';
  return mayHaveLeadingZero || hasOtherStart || isLong;
}

// A number as people write it and parseNumber() does not read it: with a decimal comma, thousands
// separators or a percent sign, such as "1,5", "1,234.50", "1.234,50" and "12 %".
bool isNumberForPeople(std::string_view field);

// What many programs write for a missing number, such as "NA" and "NULL".
bool isMissingWord(std::string_view field);

inline bool parseKey(std::string_view field, std::uint32_t& key) {
  const std::string_view text = withoutPlus(withoutBlanks(field));
  const auto result = std::from_chars(text.data(), text.data() + text.size(), key);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && !isNullKey(key);
}

}  // namespace kelvarin
