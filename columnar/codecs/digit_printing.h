// Decimal and hexadecimal digits of numbers, and numbers of decimal digits, eight at a time.
//
// Printing may write up to 8 bytes behind the digits, so it needs that much memory there. Used by
// the templates of texts.
// Threads: any.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "base/byte_cursor.h"

namespace kelvarin {

inline constexpr int kMaxDecimalDigits = 18;
inline constexpr int kMaxHexDigits = 16;

inline constexpr std::array<std::uint64_t, kMaxDecimalDigits + 2> kPowersOfTen = [] {
  std::array<std::uint64_t, kMaxDecimalDigits + 2> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) {
    powers[i] = powers[i - 1] * 10;
  }
  return powers;
}();

constexpr std::uint64_t powerOfTen(int exponent) {
  return kPowersOfTen[static_cast<std::size_t>(exponent)];
}

// The digits of a number below 10^8, the first one in the lowest byte.
inline std::uint64_t eightDigits(std::uint32_t number) {
  // Each step cuts every part into two of half its digits: 4, 2, 1.
  const std::uint64_t fours = number / 10000 | std::uint64_t{number % 10000} << 32;
  const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007F0000007F;
  const std::uint64_t twos = hundreds | (fours - hundreds * 100) << 16;
  const std::uint64_t tens = (twos * 103 >> 10) & 0x000F000F000F000F;
  return (tens | (twos - tens * 10) << 8) + 0x3030303030303030;
}

// Prints the last `width` digits of a number below 10^8; width is 1 to 8.
inline void printUpToEightDigits(std::uint32_t number, int width, unsigned char* out) {
  storePacked(out, eightDigits(number) >> (8 * (8 - width)));
}

// Prints a number with leading zeros; width is 1 to 18.
inline void printDigits(std::uint64_t number, int width, unsigned char* out) {
  constexpr std::uint64_t kEight = 100'000'000;
  if (width <= 8) {
    return printUpToEightDigits(static_cast<std::uint32_t>(number), width, out);
  }
  if (width > 16) {
    printUpToEightDigits(static_cast<std::uint32_t>(number / (kEight * kEight)), width - 16, out);
    out += width - 16;
    number %= kEight * kEight;
    width = 16;
  }
  printUpToEightDigits(static_cast<std::uint32_t>(number / kEight), width - 8, out);
  printUpToEightDigits(static_cast<std::uint32_t>(number % kEight), 8, out + width - 8);
}

// The digits of a number without leading zeros; 0 has one.
inline int digitCount(std::uint64_t number) {
  // The logarithm of 2 is about 1233 / 4096.
  const int estimate = static_cast<int>(std::bit_width(number | 1)) * 1233 >> 12;
  return estimate + (number >= powerOfTen(estimate)) + (number == 0);
}

// The lowest `width` hexadecimal digits, 1 to 16; `letterOffset` is the distance from the character
// after '9' to the letter for ten.
inline void printHex(std::uint64_t number, int width, std::uint64_t letterOffset,
                     unsigned char* out) {
  const auto eight = [letterOffset](std::uint64_t part) {
    part = (part | part << 16) & 0x0000FFFF0000FFFF;
    part = (part | part << 8) & 0x00FF00FF00FF00FF;
    part = (part | part << 4) & 0x0F0F0F0F0F0F0F0F;
    const std::uint64_t areLetters = (part + 0x0606060606060606) >> 4 & 0x0101010101010101;
    return __builtin_bswap64(part + 0x3030303030303030 + areLetters * letterOffset);
  };
  if (width > 8) {
    storePacked(out, eight(number >> 32) >> (8 * (16 - width)));
    out += width - 8;
    width = 8;
  }
  storePacked(out, eight(number & 0xFFFFFFFF) >> (8 * (8 - width)));
}

inline constexpr std::uint64_t kLowerLetterOffset = 'a' - ':';
inline constexpr std::uint64_t kUpperLetterOffset = 'A' - ':';

constexpr bool isDigit(unsigned char character) {
  return static_cast<unsigned char>(character - '0') < 10;
}

// False, and `number` is unspecified, where other characters than digits occur.
inline bool parseDigits(const unsigned char* text, int width, std::uint64_t& number) {
  number = 0;
  bool areDigits = true;
  for (int i = 0; i < width; ++i) {
    areDigits &= isDigit(text[i]);
    number = number * 10 + static_cast<unsigned char>(text[i] - '0');
  }
  return areDigits;
}

// The number of eight digits, each a byte below 10, the first one in the lowest byte.
constexpr std::uint64_t numberOfEight(std::uint64_t digits) {
  // Each step joins neighbours: to two digits, four, eight.
  digits = digits * 10 + (digits >> 8);
  digits = (digits & 0x00FF00FF00FF00FF) * 100 + ((digits & 0x00FF00FF00FF00FF) >> 16);
  digits = (digits & 0x0000FFFF0000FFFF) * 10000 + ((digits & 0x0000FFFF0000FFFF) >> 32);
  return digits & 0xFFFFFFFF;
}

// The top bit of each byte that is no digit; the bytes are characters less '0'.
constexpr std::uint64_t nonDigits(std::uint64_t bytes) {
  return ((bytes + 0x7676767676767676) | bytes) & 0x8080808080808080;
}

// Up to eight digits; `eight` are the characters there and those that follow. False, and `number`
// is unspecified, where other characters than digits occur.
inline bool parseUpToEightDigits(std::uint64_t eight, int width, std::uint64_t& number) {
  const std::uint64_t digits = (eight ^ 0x3030303030303030) << (8 * (8 - width));
  number = numberOfEight(digits);
  return nonDigits(digits) == 0;
}

}  // namespace kelvarin
