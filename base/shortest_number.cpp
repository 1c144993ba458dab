#include "base/shortest_number.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

#include <fmt/format.h>

namespace kelvarin {

namespace {

// Whole numbers below this are printed as integers, which is faster.
constexpr double kIntegersEnd = 1e15;
// Numbers that have six decimals at most are whole millionths. From the first bound to below the
// second one these have 15 digits at most, and no two decimals of 15 digits are the same double:
// the one found is the shortest.
constexpr double kMillion = 1e6;
constexpr double kDecimalsBegin = 1e-4;
constexpr double kDecimalsEnd = 1e9;
// What a product and a quotient of doubles may be off together, and a little more.
constexpr double kRoundedTwice = 2.5 * std::numeric_limits<double>::epsilon();

constexpr std::uint64_t kEightDigits = 100'000'000;
constexpr std::uint64_t kSixteenDigits = kEightDigits * kEightDigits;
constexpr std::uint64_t kZeros = 0x3030303030303030u;
constexpr int kMostDigits = 17;  // of a double
// Of the numbers without an exponent; 0.0001 has -3.
constexpr int kFewestWholeDigits = -3;
constexpr int kMostWholeDigits = 16;

constexpr std::uint64_t kPowers[] = {1,
                                     10,
                                     100,
                                     1'000,
                                     10'000,
                                     100'000,
                                     1'000'000,
                                     10'000'000,
                                     100'000'000,
                                     1'000'000'000,
                                     10'000'000'000,
                                     100'000'000'000,
                                     1'000'000'000'000,
                                     10'000'000'000'000,
                                     100'000'000'000'000,
                                     1'000'000'000'000'000,
                                     10'000'000'000'000'000,
                                     100'000'000'000'000'000};

char* appendWord(char* place, std::string_view word) {
  std::memcpy(place, word.data(), word.size());
  return place + word.size();
}

void put(char* place, std::uint64_t bytes) {
  std::memcpy(place, &bytes, sizeof bytes);
}

// The eight decimal digits of a number below 10^8, one a byte, the first in the lowest. The number
// is split in halves three times, in all parts of the word at once.
[[gnu::always_inline]] inline std::uint64_t eightDigits(std::uint64_t number) {
  const std::uint64_t fours = number / 10'000 | (number % 10'000) << 32;
  const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007F0000007Fu;
  const std::uint64_t twos = hundreds | (fours - 100 * hundreds) << 16;
  const std::uint64_t tens = (twos * 103 >> 10) & 0x000F000F000F000Fu;
  return tens | (twos - 10 * tens) << 8;
}

char* appendEightDigits(char* place, std::uint64_t number) {
  put(place, eightDigits(number) | kZeros);
  return place + 8;
}

// A number below 10^8 without leading zeros.
char* appendUpToEightDigits(char* place, std::uint64_t number) {
  constexpr std::uint64_t kLastDigit = std::uint64_t{1} << 63;
  const std::uint64_t digits = eightDigits(number);
  const int leadingZeros = std::countr_zero(digits | kLastDigit) / 8;
  put(place, (digits | kZeros) >> 8 * leadingZeros);
  return place + 8 - leadingZeros;
}

char* appendDecimals(char* place, std::uint64_t millionths) {
  place = appendWhole(place, millionths / 1'000'000);
  *place++ = '.';
  // Two zeros behind the six digits go with the trailing ones.
  const std::uint64_t digits = eightDigits(millionths % 1'000'000 * 100);
  put(place, digits | kZeros);
  return place + 8 - std::countl_zero(digits) / 8;
}

int digitCount(std::uint64_t number) {
  const int atMost = (std::bit_width(number) * 1233 >> 12) + 1;
  return number < kPowers[atMost - 1] ? atMost - 1 : atMost;
}

// The decimal digits of a double: the first one, and sixteen more as bytes, zeros behind the last.
class Digits {
 public:
  explicit Digits(std::uint64_t number) : m_count(digitCount(number)) {
    number *= kPowers[kMostDigits - m_count];
    m_first = static_cast<char>('0' + number / kSixteenDigits);
    m_high = eightDigits(number % kSixteenDigits / kEightDigits) | kZeros;
    m_low = eightDigits(number % kEightDigits) | kZeros;
  }
  int count() const { return m_count; }

  char* append(char* place) const {
    *place = m_first;
    put(place + 1, m_high);
    put(place + 9, m_low);
    return place + m_count;
  }
  // With a point after `before` digits, 1 to 16 and fewer than there are.
  char* appendWithPoint(char* place, int before) const {
    append(place);
    const int skipped = 8 * (before - 1);  // bits
    const std::uint64_t high = skipped >= 64  ? m_low >> (skipped - 64)
                               : skipped == 0 ? m_high
                                              : m_high >> skipped | m_low << (64 - skipped);
    place[before] = '.';
    put(place + before + 1, high);
    put(place + before + 9, skipped >= 64 ? 0 : m_low >> skipped);
    return place + m_count + 1;
  }

 private:
  int m_count;
  char m_first;
  std::uint64_t m_high;
  std::uint64_t m_low;
};

// At least two digits.
char* appendExponent(char* place, int exponent) {
  *place++ = 'e';
  *place++ = exponent < 0 ? '-' : '+';
  const auto size = static_cast<std::uint64_t>(std::abs(exponent));
  if (size < 10) {
    *place++ = '0';
  }
  return appendWhole(place, size);
}

// number * 10^exponent, not zero.
char* appendDigits(char* place, std::uint64_t number, int exponent) {
  const Digits digits(number);
  const int wholeDigits = digits.count() + exponent;
  if (wholeDigits < kFewestWholeDigits || wholeDigits > kMostWholeDigits) {
    place = digits.count() == 1 ? digits.append(place) : digits.appendWithPoint(place, 1);
    return appendExponent(place, wholeDigits - 1);
  }
  if (exponent >= 0) {
    return appendWhole(place, number * kPowers[exponent]);
  }
  if (wholeDigits <= 0) {
    constexpr std::string_view kNoWholeDigits = "0.000";
    place = appendWord(place, kNoWholeDigits.substr(0, static_cast<std::size_t>(2 - wholeDigits)));
    return digits.append(place);
  }
  return digits.appendWithPoint(place, wholeDigits);
}

}  // namespace

char* appendWhole(char* place, std::uint64_t number) {
  if (number < kEightDigits) [[likely]] {
    return appendUpToEightDigits(place, number);
  }
  if (number < kSixteenDigits) {
    place = appendUpToEightDigits(place, number / kEightDigits);
    return appendEightDigits(place, number % kEightDigits);
  }
  place = appendUpToEightDigits(place, number / kSixteenDigits);
  place = appendEightDigits(place, number % kSixteenDigits / kEightDigits);
  return appendEightDigits(place, number % kEightDigits);
}

char* appendShortest(char* place, double number) {
  if (!std::isfinite(number)) [[unlikely]] {
    return appendWord(place, std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf");
  }
  double magnitude = number;
  if (std::signbit(number)) {
    *place++ = '-';
    magnitude = -number;
  }
  if (magnitude < kIntegersEnd) [[likely]] {
    const auto whole = static_cast<std::uint64_t>(magnitude);
    if (static_cast<double>(whole) == magnitude) {
      return appendWhole(place, whole);
    }
  }
  if (magnitude >= kDecimalsBegin && magnitude < kDecimalsEnd) [[likely]] {
    const double scaled = magnitude * kMillion;
    const auto millionths = static_cast<std::uint64_t>(scaled + 0.5);
    // Most others are found out by the product, without waiting for the division.
    if (std::fabs(static_cast<double>(millionths) - scaled) <= scaled * kRoundedTwice &&
        static_cast<double>(millionths) / kMillion == magnitude) {
      return appendDecimals(place, millionths);
    }
  }
  // The library's printing spends more time on the digits than on finding them.
  const auto shortest = fmt::detail::dragonbox::to_decimal(magnitude);
  return appendDigits(place, shortest.significand, shortest.exponent);
}

}  // namespace kelvarin
