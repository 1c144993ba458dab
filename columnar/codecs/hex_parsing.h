// Numbers of hexadecimal digits, sixteen at a time.
//
// Its sources are compiled with SSSE3, which not all are that see the templates of texts.
// Used by TemplateParser.
#pragma once

#include <array>
#include <cstdint>

#include <tmmintrin.h>

#include "columnar/codecs/digit_printing.h"

namespace kelvarin {

// Up to sixteen hexadecimal digits, whose letters begin with `letterA`. `sixteen` are the
// characters there and those that follow. False, and `number` is unspecified, where others occur.
inline bool parseUpToSixteenHex(__m128i sixteen, int width, char letterA, std::uint64_t& number) {
  // From the index n on: moves the first n of 16 bytes to the end, and zeros before them.
  static constexpr std::array<unsigned char, 2 * kMaxHexDigits> kToEnd = [] {
    std::array<unsigned char, 2 * kMaxHexDigits> indices{};
    for (std::size_t i = 0; i < indices.size(); ++i) {
      indices[i] = static_cast<unsigned char>(i < kMaxHexDigits ? 0x80 : i - kMaxHexDigits);
    }
    return indices;
  }();
  const __m128i characters = _mm_shuffle_epi8(
      sixteen, _mm_loadu_si128(reinterpret_cast<const __m128i*>(kToEnd.data() + width)));
  // The distances from the first of `count` characters, 0 for others, for which `isOne` has zeros.
  const auto distances = [characters](char first, char count, __m128i& isOne) {
    const __m128i distance = _mm_sub_epi8(characters, _mm_set1_epi8(first));
    isOne = _mm_cmpeq_epi8(_mm_min_epu8(distance, _mm_set1_epi8(count)), distance);
    return _mm_and_si128(distance, isOne);
  };
  __m128i isDigit;
  __m128i isLetter;
  const __m128i digits = distances('0', 9, isDigit);
  const __m128i letters = distances(letterA, 5, isLetter);
  const __m128i ofLetters = _mm_and_si128(isLetter, _mm_add_epi8(letters, _mm_set1_epi8(10)));
  const __m128i values = _mm_or_si128(digits, ofLetters);
  constexpr short kSixteenAndOne = 0x0110;
  const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi16(kSixteenAndOne));
  const __m128i bytes = _mm_packus_epi16(pairs, pairs);
  number = __builtin_bswap64(static_cast<std::uint64_t>(_mm_cvtsi128_si64(bytes)));
  const int areHex = _mm_movemask_epi8(_mm_or_si128(isDigit, isLetter));
  return areHex >> (kMaxHexDigits - width) == (1 << width) - 1;
}

}  // namespace kelvarin
