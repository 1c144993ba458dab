#include "columnar/codecs/number_ranges.h"

#include <algorithm>
#include <bit>

#include "base/null_number.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelvarin::kernels {

namespace {

// Added to a number below 2^51, it leaves the number, rounded to an integer, in the low bits.
constexpr double kRounding = 6755399441055744.0;  // 2^52 + 2^51
constexpr auto kRoundingBits = std::bit_cast<std::int64_t>(kRounding);
constexpr double kLargestScaled = 1125899906842624.0;  // 2^50
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr std::int64_t kInfinityBits = 0x7FF0000000000000ll;

// Integers in the order of the doubles: the lower 63 bits of negative ones are inverted.
constexpr std::int64_t orderedBits(std::int64_t bits) {
  return bits ^ ((bits >> 63) & INT64_MAX);
}

// The result so far. The bounds are integers, and keep their initial values where there are
// no values.
struct Seen {
  std::int64_t lowest = INT64_MAX;
  std::int64_t highest = INT64_MIN;
  bool isMissing = false;
  bool isOdd = false;  // a NaN, or a number that is not exact

  bool hasValues() const { return lowest != INT64_MAX; }
};

void addRange(Seen& seen, Numbers numbers) {
  for (const std::uint64_t number : numbers) {
    const auto bits = static_cast<std::int64_t>(number);
    const bool isMissing = number == kNullNumberBits;
    const bool isNotANumber = (bits & INT64_MAX) > kInfinityBits;
    seen.isMissing |= isMissing;
    seen.isOdd |= isNotANumber & !isMissing;
    if (!isNotANumber) {
      seen.lowest = std::min(seen.lowest, orderedBits(bits));
      seen.highest = std::max(seen.highest, orderedBits(bits));
    }
  }
}

struct ScaledNumber {
  std::int64_t integer;
  bool isExact;
};

ScaledNumber scaledNumber(std::uint64_t bits, double power) {
  const double product = std::bit_cast<double>(bits) * power;
  const double shifted = product + kRounding;
  // Modulo 2^64: the result is meaningless for numbers that are too large, which are refused below.
  const auto integer = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(shifted) -
                                                 static_cast<std::uint64_t>(kRoundingBits));
  const double back = (shifted - kRounding) / power;
  const bool isSmall = product < kLargestScaled && product > -kLargestScaled;
  return {integer, isSmall && std::bit_cast<std::uint64_t>(back) == bits};
}

void addScaled(Seen& seen, Numbers numbers, double power, std::int64_t* integers) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (numbers[i] == kNullNumberBits) {
      seen.isMissing = true;
      integers[i] = kMissingInteger;
      continue;
    }
    const ScaledNumber number = scaledNumber(numbers[i], power);
    seen.isOdd |= !number.isExact;
    seen.lowest = std::min(seen.lowest, number.integer);
    seen.highest = std::max(seen.highest, number.integer);
    integers[i] = number.integer;
  }
}

#if defined(__x86_64__)
constexpr std::size_t kLanes = 4;
// Two registers in turn, since a bound depends on the one before.
constexpr std::size_t kStep = 2 * kLanes;

[[gnu::target("avx2")]] inline __m256i loaded(const std::uint64_t* numbers) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(numbers));
}
[[gnu::target("avx2")]] inline __m256i every(std::int64_t value) {
  return _mm256_set1_epi64x(value);
}
[[gnu::target("avx2")]] inline __m256i chosen(__m256i condition, __m256i yes, __m256i no) {
  return _mm256_blendv_epi8(no, yes, condition);
}
[[gnu::target("avx2")]] inline bool isAny(__m256i condition) {
  return _mm256_testz_si256(condition, condition) == 0;
}

// The results so far of four lanes.
struct SeenLanes {
  __m256i lowest;
  __m256i highest;
  __m256i isMissing;
  __m256i isOdd;
};

[[gnu::target("avx2")]] inline void begin(SeenLanes& seen) {
  seen.lowest = every(INT64_MAX);
  seen.highest = every(INT64_MIN);
  seen.isMissing = seen.isOdd = _mm256_setzero_si256();
}

// Lanes without a value change no bound.
[[gnu::target("avx2")]] inline void addBounds(SeenLanes& seen, __m256i value, __m256i isNone) {
  const __m256i forLowest = chosen(isNone, every(INT64_MAX), value);
  const __m256i forHighest = chosen(isNone, every(INT64_MIN), value);
  seen.lowest = chosen(_mm256_cmpgt_epi64(seen.lowest, forLowest), forLowest, seen.lowest);
  seen.highest = chosen(_mm256_cmpgt_epi64(forHighest, seen.highest), forHighest, seen.highest);
}

[[gnu::target("avx2")]] inline Seen ended(const SeenLanes (&seen)[2]) {
  std::int64_t lowest[kStep];
  std::int64_t highest[kStep];
  Seen result;
  for (std::size_t i = 0; i < 2; ++i) {
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(lowest + i * kLanes), seen[i].lowest);
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(highest + i * kLanes), seen[i].highest);
    result.isMissing |= isAny(seen[i].isMissing);
    result.isOdd |= isAny(seen[i].isOdd);
  }
  result.lowest = *std::min_element(lowest, lowest + kStep);
  result.highest = *std::max_element(highest, highest + kStep);
  return result;
}

[[gnu::target("avx2")]] inline void addRange(SeenLanes& seen, __m256i bits) {
  const __m256i unsignedBits = _mm256_and_si256(bits, every(INT64_MAX));
  const __m256i isNegative = _mm256_cmpgt_epi64(_mm256_setzero_si256(), bits);
  const __m256i ordered = _mm256_xor_si256(bits, _mm256_srli_epi64(isNegative, 1));
  const __m256i isNotANumber = _mm256_cmpgt_epi64(unsignedBits, every(kInfinityBits));
  const __m256i isMissing = _mm256_cmpeq_epi64(bits, every(-1));
  seen.isMissing = _mm256_or_si256(seen.isMissing, isMissing);
  seen.isOdd = _mm256_or_si256(seen.isOdd, _mm256_andnot_si256(isMissing, isNotANumber));
  addBounds(seen, ordered, isNotANumber);
}

[[gnu::target("avx2")]] Seen rangeOfLanes(Numbers numbers) {
  SeenLanes seen[2];
  begin(seen[0]);
  begin(seen[1]);
  for (std::size_t i = 0; i < numbers.size(); i += kStep) {
    addRange(seen[0], loaded(numbers.data() + i));
    addRange(seen[1], loaded(numbers.data() + i + kLanes));
  }
  return ended(seen);
}

// Returns the integers.
template <bool kDivides>
[[gnu::target("avx2")]] inline __m256i addScaled(SeenLanes& seen, __m256i bits, __m256d powers) {
  const __m256d rounding = _mm256_set1_pd(kRounding);
  const __m256d value = _mm256_castsi256_pd(bits);
  const __m256d product = kDivides ? _mm256_mul_pd(value, powers) : value;
  const __m256d shifted = _mm256_add_pd(product, rounding);
  const __m256i integer = _mm256_sub_epi64(_mm256_castpd_si256(shifted), every(kRoundingBits));
  const __m256d rounded = _mm256_sub_pd(shifted, rounding);
  const __m256d back = kDivides ? _mm256_div_pd(rounded, powers) : rounded;
  const __m256d isSmall = _mm256_cmp_pd(_mm256_andnot_pd(_mm256_set1_pd(-0.0), product),
                                        _mm256_set1_pd(kLargestScaled), _CMP_LT_OQ);
  const __m256i isSame = _mm256_cmpeq_epi64(_mm256_castpd_si256(back), bits);
  const __m256i isExact = _mm256_and_si256(_mm256_castpd_si256(isSmall), isSame);
  const __m256i isMissing = _mm256_cmpeq_epi64(bits, every(-1));
  seen.isMissing = _mm256_or_si256(seen.isMissing, isMissing);
  seen.isOdd = _mm256_or_si256(seen.isOdd,
                               _mm256_andnot_si256(_mm256_or_si256(isMissing, isExact), every(-1)));
  addBounds(seen, integer, isMissing);
  return chosen(isMissing, every(kMissingInteger), integer);
}

template <bool kDivides>
[[gnu::target("avx2")]] Seen scaleLanes(Numbers numbers, double power, std::int64_t* integers) {
  const __m256d powers = _mm256_set1_pd(power);
  SeenLanes seen[2];
  begin(seen[0]);
  begin(seen[1]);
  for (std::size_t i = 0; i < numbers.size(); i += kStep) {
    for (std::size_t lanes = 0; lanes < 2; ++lanes) {
      const std::size_t first = i + lanes * kLanes;
      _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(integers + first),
                          addScaled<kDivides>(seen[lanes], loaded(numbers.data() + first), powers));
    }
  }
  return ended(seen);
}

#endif

// How many of the numbers, from the first one on, the wide operations process.
std::size_t wideCount([[maybe_unused]] std::size_t count) {
#if defined(__x86_64__)
  static const bool isWide = __builtin_cpu_supports("avx2");
  return isWide ? count / kStep * kStep : 0;
#else
  return 0;
#endif
}

}  // namespace

NumberRange rangeOf(Numbers numbers) {
  const std::size_t wide = wideCount(numbers.size());
  Seen seen;
#if defined(__x86_64__)
  if (wide > 0) {
    seen = rangeOfLanes(numbers.first(wide));
  }
#endif
  addRange(seen, numbers.subspan(wide));
  const auto number = [](std::int64_t ordered) {
    return std::bit_cast<double>(orderedBits(ordered));
  };
  return {.hasMissing = seen.isMissing,
          .hasNotANumber = seen.isOdd,
          .hasValues = seen.hasValues(),
          .lowest = seen.hasValues() ? number(seen.lowest) : 0.0,
          .highest = seen.hasValues() ? number(seen.highest) : 0.0};
}

ScaledRange scale(Numbers numbers, int exponent, std::int64_t* integers) {
  const double power = powerOfTen(exponent);
  const std::size_t wide = wideCount(numbers.size());
  Seen seen;
#if defined(__x86_64__)
  if (wide > 0) {
    const auto scaleWide = exponent == 0 ? scaleLanes<false> : scaleLanes<true>;
    seen = scaleWide(numbers.first(wide), power, integers);
  }
#endif
  addScaled(seen, numbers.subspan(wide), power, integers + wide);
  return {.isExact = !seen.isOdd,
          .hasMissing = seen.isMissing,
          .hasValues = seen.hasValues(),
          .lowest = seen.lowest,
          .highest = seen.highest};
}

bool isExactScaled(std::uint64_t number, int exponent) {
  return number == kNullNumberBits || scaledNumber(number, powerOfTen(exponent)).isExact;
}

double powerOfTen(int exponent) {
  return kPowersOfTen[exponent];
}

}  // namespace kelvarin::kernels
