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
// More than the roundings of a product and a quotient of doubles add up to.
constexpr double kRoundedTwice = 2.5 * std::numeric_limits<double>::epsilon();

constexpr std::uint64_t kEightDigits = 100'000'000;
constexpr std::uint64_t kSixteenDigits = kEightDigits * kEightDigits;
constexpr std::uint64_t kZeros = 0x3030303030303030u;
constexpr int kMaxDigits = 17;  // of a double
// Of the numbers that are printed without an exponent; 0.0001 has -3.
constexpr int kMinWholeDigits = -3;
constexpr int kMaxWholeDigits = 16;

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

char* appendWord(char* out, std::string_view word) {
  std::memcpy(out, word.data(), word.size());
  return out + word.size();
}

void put(char* out, std::uint64_t bytes) {
  std::memcpy(out, &bytes, sizeof bytes);
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

char* appendEightDigits(char* out, std::uint64_t number) {
  put(out, eightDigits(number) | kZeros);
  return out + 8;
}

// A number below 10^8 without leading zeros.
char* appendUpToEightDigits(char* out, std::uint64_t number) {
  constexpr std::uint64_t kLastDigit = std::uint64_t{1} << 63;
  const std::uint64_t digits = eightDigits(number);
  const int leadingZeros = std::countr_zero(digits | kLastDigit) / 8;
  put(out, (digits | kZeros) >> 8 * leadingZeros);
  return out + 8 - leadingZeros;
}

char* appendDecimals(char* out, std::uint64_t millionths) {
  out = appendWhole(out, millionths / 1'000'000);
  *out++ = '.';
  // The two zeros after the six digits are cut off with the trailing ones.
  const std::uint64_t digits = eightDigits(millionths % 1'000'000 * 100);
  put(out, digits | kZeros);
  return out + 8 - std::countl_zero(digits) / 8;
}

int digitCount(std::uint64_t number) {
  const int atMost = (std::bit_width(number) * 1233 >> 12) + 1;
  return number < kPowers[atMost - 1] ? atMost - 1 : atMost;
}

// The decimal digits of a double: the first one, and sixteen more as bytes, zeros after the last.
class Digits {
 public:
  explicit Digits(std::uint64_t number) : m_count(digitCount(number)) {
    number *= kPowers[kMaxDigits - m_count];
    m_first = static_cast<char>('0' + number / kSixteenDigits);
    m_high = eightDigits(number % kSixteenDigits / kEightDigits) | kZeros;
    m_low = eightDigits(number % kEightDigits) | kZeros;
  }
  int count() const { return m_count; }

  char* append(char* out) const {
    *out = m_first;
    put(out + 1, m_high);
    put(out + 9, m_low);
    return out + m_count;
  }
  // With a point after `before` digits, 1 to 16 and fewer than there are.
  char* appendWithPoint(char* out, int before) const {
    append(out);
    const int skipped = 8 * (before - 1);  // bits
    const std::uint64_t high = skipped >= 64  ? m_low >> (skipped - 64)
                               : skipped == 0 ? m_high
                                              : m_high >> skipped | m_low << (64 - skipped);
    out[before] = '.';
    put(out + before + 1, high);
    put(out + before + 9, skipped >= 64 ? 0 : m_low >> skipped);
    return out + m_count + 1;
  }

 private:
  int m_count;
  char m_first;
  std::uint64_t m_high;
  std::uint64_t m_low;
};

// At least two digits.
char* appendExponent(char* out, int exponent) {
  *out++ = 'e';
  *out++ = exponent < 0 ? '-' : '+';
  const auto size = static_cast<std::uint64_t>(std::abs(exponent));
  if (size < 10) {
    *out++ = '0';
  }
  return appendWhole(out, size);
}

// number * 10^exponent, not zero.
char* appendDigits(char* out, std::uint64_t number, int exponent) {
  const Digits digits(number);
  const int wholeDigits = digits.count() + exponent;
  if (wholeDigits < kMinWholeDigits || wholeDigits > kMaxWholeDigits) {
    out = digits.count() == 1 ? digits.append(out) : digits.appendWithPoint(out, 1);
    return appendExponent(out, wholeDigits - 1);
  }
  if (exponent >= 0) {
    return appendWhole(out, number * kPowers[exponent]);
  }
  if (wholeDigits <= 0) {
    constexpr std::string_view kNoWholeDigits = "0.000";
    out = appendWord(out, kNoWholeDigits.substr(0, static_cast<std::size_t>(2 - wholeDigits)));
    return digits.append(out);
  }
  return digits.appendWithPoint(out, wholeDigits);
}

}  // namespace

char* appendWhole(char* out, std::uint64_t number) {
  if (number < kEightDigits) [[likely]] {
    return appendUpToEightDigits(out, number);
  }
  if (number < kSixteenDigits) {
    out = appendUpToEightDigits(out, number / kEightDigits);
    return appendEightDigits(out, number % kEightDigits);
  }
  out = appendUpToEightDigits(out, number / kSixteenDigits);
  out = appendEightDigits(out, number % kSixteenDigits / kEightDigits);
  return appendEightDigits(out, number % kEightDigits);
}

char* appendShortest(char* out, double number) {
  if (!std::isfinite(number)) [[unlikely]] {
    return appendWord(out, std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf");
  }
  double magnitude = number;
  if (std::signbit(number)) {
    *out++ = '-';
    magnitude = -number;
  }
  if (magnitude < kIntegersEnd) [[likely]] {
    const auto whole = static_cast<std::uint64_t>(magnitude);
    if (static_cast<double>(whole) == magnitude) {
      return appendWhole(out, whole);
    }
  }
  if (magnitude >= kDecimalsBegin && magnitude < kDecimalsEnd) [[likely]] {
    const double scaled = magnitude * kMillion;
    const auto millionths = static_cast<std::uint64_t>(scaled + 0.5);
    // The product alone rules most others out, without waiting for the division.
    if (std::fabs(static_cast<double>(millionths) - scaled) <= scaled * kRoundedTwice &&
        static_cast<double>(millionths) / kMillion == magnitude) {
      return appendDecimals(out, millionths);
    }
  }
  // The library's printing spends more time on the digits than on finding them.
  const auto shortest = fmt::detail::dragonbox::to_decimal(magnitude);
  return appendDigits(out, shortest.significand, shortest.exponent);
}

}  // namespace kelvarin
