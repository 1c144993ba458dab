// The decimal digits of whole numbers, eight or sixteen at once and without a branch.
//
// Used by shortest_number.cpp and number_texts.cpp.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kelvarin {

inline constexpr std::uint64_t kEightDigits = 100'000'000;
inline constexpr std::uint64_t kSixteenDigits = kEightDigits * kEightDigits;
inline constexpr std::uint64_t kZeroDigits = 0x3030303030303030u;

inline void putEightBytes(char* out, std::uint64_t bytes) {
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

// Prints two numbers below 10^8 with eight digits each. The result has a bit for each digit that is
// not zero: bits 0 to 7 are those of the first number, from its first digit on.
[[gnu::always_inline]] inline unsigned putTwiceEightDigits(char* firstOut, std::uint64_t first,
                                                           char* secondOut, std::uint64_t second) {
#ifdef __SSE2__
  const __m128i numbers =
      _mm_set_epi64x(static_cast<std::int64_t>(second), static_cast<std::int64_t>(first));
  // As above; each quotient stands twice where it is subtracted, times the divisor, from the upper
  // half. 10^-4 is 3518437209 / 2^45, nearly.
  const __m128i upper = _mm_srli_epi64(_mm_mul_epu32(numbers, _mm_set1_epi64x(3'518'437'209)), 45);
  const __m128i lower = _mm_sub_epi32(numbers, _mm_mul_epu32(upper, _mm_set1_epi64x(10'000)));
  const __m128i fours = _mm_or_si128(upper, _mm_slli_epi64(lower, 32));
  const __m128i shifted = _mm_slli_epi32(fours, 16);
  const __m128i hundreds =
      _mm_srli_epi16(_mm_mulhi_epu16(_mm_or_si128(fours, shifted), _mm_set1_epi16(5243)), 3);
  const __m128i twos =
      _mm_add_epi16(_mm_mullo_epi16(hundreds, _mm_set1_epi32(1 - 100 * 65536)), shifted);
  const __m128i tens = _mm_mulhi_epu16(twos, _mm_set1_epi16(6554));
  const __m128i digits =
      _mm_add_epi16(_mm_mullo_epi16(tens, _mm_set1_epi16(1 - 10 * 256)), _mm_slli_epi16(twos, 8));
  const __m128i printed = _mm_or_si128(digits, _mm_set1_epi8('0'));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(firstOut), printed);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(secondOut), _mm_unpackhi_epi64(printed, printed));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(digits, _mm_setzero_si128())));
#else
  const auto put = [](char* out, std::uint64_t number) {
    const std::uint64_t digits = eightDigits(number);
    putEightBytes(out, digits | kZeroDigits);
    // The high bit of each byte is gathered in the highest byte of the product.
    const std::uint64_t isNotZero = (digits + 0x7F7F7F7F7F7F7F7Fu) >> 7 & 0x0101010101010101u;
    return static_cast<unsigned>(isNotZero * 0x0102040810204080u >> 56);
  };
  const unsigned inFirst = put(firstOut, first);
  return inFirst | put(secondOut, second) << 8;
#endif
}

// Prints a number below 10^16 with sixteen digits; returns how many there are without the zeros at
// the end.
[[gnu::always_inline]] inline int putSixteenDigits(char* out, std::uint64_t number) {
  return std::bit_width(
      putTwiceEightDigits(out, number / kEightDigits, out + 8, number % kEightDigits));
}

}  // namespace kelvarin
