#include "base/number_texts.h"

#include <bit>
#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "base/decimal_digits.h"
#include "base/null_number.h"
#include "base/shortest_number.h"

namespace kelvarin {

namespace {

// Numbers that have six decimals at most are whole millionths. Between the bounds these have 14
// digits at most, and no two decimals of 15 digits are the same double: the one found is the
// shortest. Smaller numbers have an exponent.
constexpr double kMillion = 1e6;
constexpr std::uint64_t kShortBegin = std::bit_cast<std::uint64_t>(1e-4);
constexpr std::uint64_t kShortEnd = std::bit_cast<std::uint64_t>(1e8);
// Added to a number below 2^51, it rounds to a whole number, which its low bits then are.
constexpr double kRounding = 0x1.8p52;
constexpr std::uint64_t kRoundedBits = (std::uint64_t{1} << 51) - 1;

struct Millionths {
  std::uint64_t number;
  bool isExact;
};

// Without branches, which would depend on the digits.
Millionths millionthsOf(double magnitude) {
  const double rounded = magnitude * kMillion + kRounding;
  const double readBack = (rounded - kRounding) / kMillion;
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const bool isReadBack = std::bit_cast<std::uint64_t>(readBack) == bits;
  const bool isInBounds = bits - kShortBegin < kShortEnd - kShortBegin;
  return {std::bit_cast<std::uint64_t>(rounded) & kRoundedBits,
          static_cast<bool>(isReadBack & (isInBounds | (bits == 0)))};
}

// The position of the point in all texts; eight digits are before and after it.
constexpr unsigned kPoint = 9;
static_assert(kPoint + 1 + 8 <= NumberText::kCopied);

// Which bytes count, when digits and point are printed. Bits 0 to 7 of `notZero` are those of the
// digits before the point that are not zero, bits 8 to 15 of those after it.
[[gnu::always_inline]] inline void setBounds(unsigned notZero, unsigned isNegative,
                                             NumberText& text) {
  // The last digit before the point is always printed, the point only before others.
  const auto firstDigit = static_cast<unsigned>(std::countr_zero(notZero | 0x80));
  const auto decimals = static_cast<unsigned>(std::bit_width(notZero | 0x80)) - 8;
  const unsigned begin = kPoint - 8 + firstDigit;
  text.bytes[begin - 1] = '-';
  text.begin = static_cast<std::uint8_t>(begin - isNegative);
  text.size =
      static_cast<std::uint8_t>(kPoint + (decimals > 0 ? 1 : 0) + decimals - begin + isNegative);
}

// Prints the short numbers among some; the result has a bit for each of them.
using PrintShort = std::uint64_t (*)(const double*, std::size_t, NumberText*);

std::uint64_t printShortFrom(std::size_t first, const double* numbers, std::size_t count,
                             NumberText* texts) {
  std::uint64_t printed = 0;
  for (std::size_t i = first; i < count; ++i) {
    const Millionths millionths = millionthsOf(std::fabs(numbers[i]));
    char* point = texts[i].bytes + kPoint;
    const unsigned notZero = putTwiceEightDigits(point - 8, millionths.number / 1'000'000,
                                                 point + 1, millionths.number % 1'000'000 * 100);
    *point = '.';
    setBounds(notZero, std::signbit(numbers[i]) ? 1 : 0, texts[i]);
    printed |= std::uint64_t{millionths.isExact} << i;
  }
  return printed;
}

std::uint64_t printShortPortably(const double* numbers, std::size_t count, NumberText* texts) {
  return printShortFrom(0, numbers, count, texts);
}

#if defined(__x86_64__)
constexpr std::size_t kLanes = 4;

// Short numbers in parts, both below 10^8, and a bit for each of those that are short.
struct ShortLanes {
  __m128i whole;
  __m128i decimals;  // eight digits
  unsigned areShort;
};

[[gnu::target("avx2")]] inline ShortLanes shortLanes(__m256d numbers) {
  const __m256d million = _mm256_set1_pd(kMillion);
  const __m256d magnitudes = _mm256_andnot_pd(_mm256_set1_pd(-0.0), numbers);
  const __m256d rounding = _mm256_set1_pd(kRounding);
  const __m256d millionths =
      _mm256_sub_pd(_mm256_add_pd(_mm256_mul_pd(magnitudes, million), rounding), rounding);
  const __m256d isReadBack =
      _mm256_cmp_pd(_mm256_div_pd(millionths, million), magnitudes, _CMP_EQ_OQ);
  const __m256d isInBounds = _mm256_and_pd(
      _mm256_cmp_pd(magnitudes, _mm256_set1_pd(std::bit_cast<double>(kShortBegin)), _CMP_GE_OQ),
      _mm256_cmp_pd(magnitudes, _mm256_set1_pd(std::bit_cast<double>(kShortEnd)), _CMP_LT_OQ));
  const __m256d isNull = _mm256_cmp_pd(magnitudes, _mm256_setzero_pd(), _CMP_EQ_OQ);
  const __m256d whole = _mm256_floor_pd(magnitudes);
  const __m256d rest = _mm256_sub_pd(millionths, _mm256_mul_pd(whole, million));
  return {_mm256_cvttpd_epi32(whole), _mm256_cvttpd_epi32(_mm256_mul_pd(rest, _mm256_set1_pd(100))),
          static_cast<unsigned>(
              _mm256_movemask_pd(_mm256_and_pd(isReadBack, _mm256_or_pd(isInBounds, isNull))))};
}

// The steps of putTwiceEightDigits() for two numbers: the parts before and after the point of one,
// then those of the other.
[[gnu::target("avx2")]] inline __m256i digitsOfTwo(__m128i parts) {
  const __m256i numbers = _mm256_cvtepu32_epi64(parts);
  const __m256i upper =
      _mm256_srli_epi64(_mm256_mul_epu32(numbers, _mm256_set1_epi64x(3'518'437'209)), 45);
  const __m256i lower =
      _mm256_sub_epi32(numbers, _mm256_mul_epu32(upper, _mm256_set1_epi64x(10'000)));
  const __m256i fours = _mm256_or_si256(upper, _mm256_slli_epi64(lower, 32));
  const __m256i shifted = _mm256_slli_epi32(fours, 16);
  const __m256i hundreds = _mm256_srli_epi16(
      _mm256_mulhi_epu16(_mm256_or_si256(fours, shifted), _mm256_set1_epi16(5243)), 3);
  const __m256i twos =
      _mm256_add_epi16(_mm256_mullo_epi16(hundreds, _mm256_set1_epi32(1 - 100 * 65536)), shifted);
  const __m256i tens = _mm256_mulhi_epu16(twos, _mm256_set1_epi16(6554));
  return _mm256_add_epi16(_mm256_mullo_epi16(tens, _mm256_set1_epi16(1 - 10 * 256)),
                          _mm256_slli_epi16(twos, 8));
}

[[gnu::target("avx2")]] inline void putDigits(__m128i printed, char* point) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(point - 8), printed);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(point + 1), _mm_unpackhi_epi64(printed, printed));
  *point = '.';
}

[[gnu::target("avx2")]] inline void printTwo(__m128i parts, unsigned areNegative,
                                             NumberText* texts) {
  const __m256i digits = digitsOfTwo(parts);
  const __m256i printed = _mm256_or_si256(digits, _mm256_set1_epi8('0'));
  putDigits(_mm256_castsi256_si128(printed), texts[0].bytes + kPoint);
  putDigits(_mm256_extracti128_si256(printed, 1), texts[1].bytes + kPoint);
  const auto notZero = static_cast<unsigned>(
      _mm256_movemask_epi8(_mm256_cmpgt_epi8(digits, _mm256_setzero_si256())));
  setBounds(notZero & 0xFFFF, areNegative & 1, texts[0]);
  setBounds(notZero >> 16, areNegative >> 1 & 1, texts[1]);
}

[[gnu::target("avx2")]] std::uint64_t printShortWide(const double* numbers, std::size_t count,
                                                     NumberText* texts) {
  std::uint64_t printed = 0;
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    const __m256d four = _mm256_loadu_pd(numbers + i);
    const ShortLanes lanes = shortLanes(four);
    if (lanes.areShort == 0) {
      continue;
    }
    const auto areNegative = static_cast<unsigned>(_mm256_movemask_pd(four));
    printTwo(_mm_unpacklo_epi32(lanes.whole, lanes.decimals), areNegative, texts + i);
    printTwo(_mm_unpackhi_epi32(lanes.whole, lanes.decimals), areNegative >> 2, texts + i + 2);
    printed |= std::uint64_t{lanes.areShort} << i;
  }
  // Left out by the compiler where it knows the function that is called; others would be slow.
  _mm256_zeroupper();
  return printed | printShortFrom(i, numbers, count, texts);
}
#endif

PrintShort fastestPrintShort() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return printShortWide;
  }
#endif
  return printShortPortably;
}

void printOther(double number, NumberText& text) {
  text.begin = 0;
  text.size = 0;
  if (!isNullNumber(number)) {
    text.size = static_cast<std::uint8_t>(appendShortest(text.bytes, number) - text.bytes);
  }
}

}  // namespace

void printNumbers(const double* numbers, std::size_t count, NumberText* texts) {
  static const PrintShort printShort = fastestPrintShort();
  if (count == 0) {
    return;
  }
  const std::uint64_t all = ~std::uint64_t{0} >> (kNumbersPrinted - count);
  for (std::uint64_t left = ~printShort(numbers, count, texts) & all; left != 0; left &= left - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(left));
    printOther(numbers[i], texts[i]);
  }
}

}  // namespace kelvarin
