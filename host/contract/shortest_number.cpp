#include "host/contract/shortest_number.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

namespace kelvarin {

namespace {

// Whole numbers below this are printed as integers, which is faster.
constexpr double kIntegersEnd = 1e15;
// Numbers that have six decimals at most are whole millionths. From the first bound to below the
// second one these have 15 digits at most, and no two decimals of 15 digits are the same double: the
// one found is the shortest.
constexpr double kMillion = 1e6;
constexpr double kDecimalsBegin = 1e-4;
constexpr double kDecimalsEnd = 1e9;

constexpr std::uint64_t kEightDigits = 100'000'000;
constexpr std::uint64_t kSixteenDigits = kEightDigits * kEightDigits;
constexpr std::uint64_t kZeros = 0x3030303030303030u;
constexpr int kMostDigits = 17;  // of a double
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
std::uint64_t eightDigits(std::uint64_t number) {
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

// digits * 10^exponent, which is not zero and at least 0.0001.
char* appendFixed(char* place, std::uint64_t digits, int exponent) {
  const int count = digitCount(digits);
  const int wholeDigits = count + exponent;
  if (exponent >= 0) {
    return appendWhole(place, digits * kPowers[exponent]);
  }
  // Left-aligned: the first digit, and sixteen more as bytes.
  digits *= kPowers[kMostDigits - count];
  const char first = static_cast<char>('0' + digits / kSixteenDigits);
  const std::uint64_t high = eightDigits(digits % kSixteenDigits / kEightDigits) | kZeros;
  const std::uint64_t low = eightDigits(digits % kEightDigits) | kZeros;
  if (wholeDigits <= 0) {
    place = appendWord(place, std::string_view("0.000").substr(0, 2 - static_cast<unsigned>(wholeDigits) * 1));
    *place = first;
    put(place + 1, high);
    put(place + 9, low);
    return place + count;
  }
  *place = first;
  put(place + 1, high);
  put(place + 9, low);
  // What comes after the point, moved by one byte.
  const int skipped = 8 * (wholeDigits - 1);
  const std::uint64_t highRest = skipped >= 64 ? low >> (skipped - 64)
                                 : skipped == 0 ? high
                                                : high >> skipped | low << (64 - skipped);
  place[wholeDigits] = '.';
  put(place + wholeDigits + 1, highRest);
  put(place + wholeDigits + 9, skipped >= 64 ? 0 : low >> skipped);
  return place + count + 1;
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
    const auto millionths = static_cast<std::uint64_t>(magnitude * kMillion + 0.5);
    if (static_cast<double>(millionths) / kMillion == magnitude) {
      return appendDecimals(place, millionths);
    }
  }
  const auto shortest = fmt::detail::dragonbox::to_decimal(magnitude);
  const int wholeDigits = digitCount(shortest.significand) + shortest.exponent;
  if (magnitude >= kDecimalsBegin && wholeDigits <= kMostWholeDigits) [[likely]] {
    return appendFixed(place, shortest.significand, shortest.exponent);
  }
  return fmt::format_to(place, FMT_COMPILE("{}"), magnitude);
}

}  // namespace kelvarin
