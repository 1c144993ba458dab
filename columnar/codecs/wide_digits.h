// The digits of numbers in registers of 16 bytes: several numbers, or many digits, at a time.
//
// Digits are bytes below 10, the first one of a number in its lowest byte. Used where the fields of
// many texts are printed.
// Threads: any.
#pragma once

#include <bit>
#include <cstdint>

#include <nmmintrin.h>

namespace kelvarin {

// Both digits of each of eight numbers below 100.
inline __m128i digitsOfPairs(__m128i pairs) {
  const __m128i tens = _mm_mulhi_epu16(pairs, _mm_set1_epi16(6554));  // 2^16 / 10
  // tens + (pair - 10 tens) x 256
  return _mm_add_epi16(_mm_slli_epi16(pairs, 8), _mm_mullo_epi16(tens, _mm_set1_epi16(1 - 2560)));
}

// The eight digits of each of two numbers below 10^8.
inline __m128i eightDigitsOfBoth(std::uint64_t first, std::uint64_t second) {
  // Each step cuts every part into two of half its digits: 4, 2, 1.
  const __m128i numbers =
      _mm_set_epi64x(static_cast<std::int64_t>(second), static_cast<std::int64_t>(first));
  const __m128i upper =
      _mm_srli_epi64(_mm_mul_epu32(numbers, _mm_set1_epi64x(0xD1B71759)), 45);  // 2^45 / 10000
  const __m128i lower = _mm_sub_epi64(numbers, _mm_mul_epu32(upper, _mm_set1_epi64x(10000)));
  const __m128i fours = _mm_or_si128(upper, _mm_slli_epi64(lower, 32));
  const __m128i hundreds =
      _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi16(5243)), 3);  // 2^19 / 100
  const __m128i rest = _mm_sub_epi16(fours, _mm_mullo_epi16(hundreds, _mm_set1_epi16(100)));
  return digitsOfPairs(_mm_or_si128(hundreds, _mm_slli_epi32(rest, 16)));
}

// The characters of digits.
constexpr std::uint64_t charactersOf(std::uint64_t digits) {
  return digits | 0x3030303030303030;
}

// How many bits the zeros before eight digits take; the last digits, so many, are left out.
inline unsigned bitsOfLeadingZeros(std::uint64_t digits, int lastDigits) {
  const std::uint64_t last = std::uint64_t{1} << (8 * (8 - lastDigits));
  return static_cast<unsigned>(std::countr_zero(digits | last)) & ~7u;
}

}  // namespace kelvarin
