#include "base/shortest_number.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include <fmt/format.h>

#include "base/decimal_digits.h"

namespace kelvarin {

namespace {

__extension__ using WideProduct = unsigned __int128;

// Numbers of 2^53 and more are whole, and not all whole numbers are doubles.
constexpr double kWholesEnd = 0x1p53;
// Numbers below, and from the second bound on, are printed with an exponent.
constexpr double kPlainBegin = 1e-4;
constexpr double kPlainEnd = 1e16;

constexpr int kFractionBits = 52;
constexpr int kExponentBias = 1023 + kFractionBits;
constexpr std::uint64_t kTopBit = std::uint64_t{1} << 63;

// What numbers of the same exponent have in common. They are whole multiples of 2^-e, and of none
// of these units more than 2^53 ones.
struct DecimalScale {
  int decimals;              // d, the fewest for which 10^-d is not above 2^-e
  std::uint64_t multiplier;  // 10^d * 2^(53 - e), a whole number
  std::uint64_t toSixteen;   // 10^(16 - d), for numbers of 1 and more
};

constexpr std::uint64_t power(std::uint64_t base, int exponent) {
  std::uint64_t product = 1;
  for (int i = 0; i < exponent; ++i) {
    product *= base;
  }
  return product;
}

constexpr DecimalScale scaleOf(int binaryDecimals) {
  int decimals = 0;
  for (WideProduct tens = 1; tens < WideProduct{1} << binaryDecimals; tens *= 10) {
    ++decimals;
  }
  return {decimals, power(5, decimals) << (53 - binaryDecimals + decimals),
          decimals <= 16 ? power(10, 16 - decimals) : 0};
}

// From the exponent of kPlainBegin to that of the last number with a fraction.
constexpr int kFirstExponent = 1023 - 14;
constexpr std::size_t kScaleCount = 14 + kFractionBits;
constexpr std::array<DecimalScale, kScaleCount> kScales = [] {
  std::array<DecimalScale, kScaleCount> scales{};
  for (std::size_t i = 0; i < kScaleCount; ++i) {
    scales[i] = scaleOf(kExponentBias - kFirstExponent - static_cast<int>(i));
  }
  return scales;
}();

// The shortest decimal that reads back to a number is digits / 10^scale.decimals.
struct ShortDecimal {
  std::uint64_t digits;
  const DecimalScale& scale;
};

// Of a number from kPlainBegin to below kWholesEnd that is not whole. All decimals that are nearer
// to it than half a unit 2^-e read back to it. A unit is 10^-d to below 10^(1-d), so that at most
// one number of d - 1 decimals is so near. If there is one, it is the shortest, else the nearest
// number of d decimals is. All steps are exact, and without branches that depend on the digits.
[[gnu::always_inline]] inline ShortDecimal shortDecimal(std::uint64_t bits) {
  constexpr std::uint64_t kTen = std::uint64_t{10} << 60;
  const DecimalScale& scale = kScales[(bits >> kFractionBits) - kFirstExponent];
  const WideProduct scaled = static_cast<WideProduct>(bits << 11 | kTopBit) * scale.multiplier;
  const auto whole = static_cast<std::uint64_t>(scaled >> 64);
  const auto fraction = static_cast<std::uint64_t>(scaled);
  const std::uint64_t tens = whole / 10;
  const std::uint64_t last = whole - 10 * tens;
  // Distances in units of 2^-60. The fraction has 46 bits at most, so none is lost.
  const std::uint64_t aboveTens = last << 60 | fraction >> 4;
  // Numbers with an even last bit are what the bounds are rounded to.
  const std::uint64_t bound = (scale.multiplier << 6) + (~bits & 1);
  const auto isNext = static_cast<std::uint64_t>(kTen - aboveTens < bound);
  const auto isNotThis = static_cast<std::uint64_t>(aboveTens >= bound);
  // Of two that are as near, the even one.
  const std::uint64_t nearest = last + ((fraction >> 1) + (last & 1) > kTopBit >> 1 ? 1 : 0);
  const std::uint64_t added = (nearest & (isNext - 1)) | (10 & (0 - isNext));
  return {10 * tens + (added & (0 - isNotThis)), scale};
}

// A number below 10^8 without leading zeros.
[[gnu::always_inline]] inline char* appendUpToEightDigits(char* out, std::uint64_t number) {
  const std::uint64_t digits = eightDigits(number);
  const int leadingZeros = std::countr_zero(digits | kTopBit) / 8;
  putEightBytes(out, (digits | kZeroDigits) >> 8 * leadingZeros);
  return out + 8 - leadingZeros;
}

[[gnu::always_inline]] inline char* appendEightDigits(char* out, std::uint64_t number) {
  putEightBytes(out, eightDigits(number) | kZeroDigits);
  return out + 8;
}

[[gnu::always_inline]] inline char* appendWholeInline(char* out, std::uint64_t number) {
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

// From 1 to below kWholesEnd, with the part of it that is whole. What is not is more than half a
// unit from the next whole number, so that the decimal has the same whole part.
[[gnu::noinline]] char* appendDecimal(char* out, std::uint64_t bits, std::uint64_t whole) {
  const ShortDecimal decimal = shortDecimal(bits);
  out = appendWholeInline(out, whole);
  *out++ = '.';
  // The products may exceed 64 bits, but not their difference.
  return out +
         putSixteenDigits(out, decimal.digits * decimal.scale.toSixteen - whole * kSixteenDigits);
}

// From kPlainBegin to below 1: the digits are 17 at most, the last of scale.decimals ones.
char* appendFraction(char* out, std::uint64_t bits) {
  const ShortDecimal decimal = shortDecimal(bits);
  putEightBytes(out, kZeroDigits);
  char* first = out + decimal.scale.decimals - 15;
  *first = static_cast<char>('0' + decimal.digits / kSixteenDigits);
  out[1] = '.';  // where the first of 17 digits was, if there are 16 decimals
  return first + 1 + putSixteenDigits(first + 1, decimal.digits % kSixteenDigits);
}

char* appendWord(char* out, std::string_view word) {
  std::memcpy(out, word.data(), word.size());
  return out + word.size();
}

// At least two digits.
char* appendExponent(char* out, int exponent) {
  *out++ = 'e';
  *out++ = exponent < 0 ? '-' : '+';
  const auto size = static_cast<std::uint64_t>(exponent < 0 ? -exponent : exponent);
  if (size < 10) {
    *out++ = '0';
  }
  return appendWholeInline(out, size);
}

// Of the numbers that are neither whole below kWholesEnd nor decimals: very large and small ones.
char* appendRare(char* out, double magnitude) {
  if (!std::isfinite(magnitude)) {
    return appendWord(out, std::isnan(magnitude) ? "nan" : "inf");
  }
  const auto shortest = fmt::detail::dragonbox::to_decimal(magnitude);
  if (magnitude >= kPlainBegin && magnitude < kPlainEnd) {
    return appendWholeInline(out, shortest.significand * power(10, shortest.exponent));
  }
  // The digits are written one byte further, and the first one moved before the point.
  char* end = appendWholeInline(out + 1, shortest.significand);
  const auto digitCount = static_cast<int>(end - out) - 1;
  out[0] = out[1];
  out[1] = '.';
  return appendExponent(digitCount == 1 ? out + 1 : end, shortest.exponent + digitCount - 1);
}

}  // namespace

char* appendWhole(char* out, std::uint64_t number) {
  return appendWholeInline(out, number);
}

char* appendShortest(char* out, double number) {
  const auto signedBits = std::bit_cast<std::uint64_t>(number);
  const std::uint64_t bits = signedBits & ~kTopBit;
  const auto magnitude = std::bit_cast<double>(bits);
  *out = '-';
  char* digits = out + (signedBits >> 63);
  if (magnitude < kWholesEnd) [[likely]] {
    const auto whole = static_cast<std::int64_t>(magnitude);
    if (static_cast<double>(whole) == magnitude) {
      return appendWholeInline(digits, static_cast<std::uint64_t>(whole));
    }
    if (magnitude >= 1) [[likely]] {
      return appendDecimal(digits, bits, static_cast<std::uint64_t>(whole));
    }
    if (magnitude >= kPlainBegin) {
      return appendFraction(digits, bits);
    }
  }
  return appendRare(std::isnan(number) ? out : digits, magnitude);
}

}  // namespace kelvarin
