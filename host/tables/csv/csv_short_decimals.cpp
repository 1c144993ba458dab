#include "host/tables/csv/csv_short_decimals.h"

#include <cstring>

#include "base/null_number.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelvarin {

namespace {

using Parse = std::uint64_t (*)(const CsvBlock&, std::size_t, long long, std::size_t, double*);

std::uint64_t parseNone(const CsvBlock&, std::size_t, long long, std::size_t, double*) {
  return 0;
}

#if defined(__x86_64__)
constexpr std::size_t kLanes = 4;

[[gnu::target("avx2")]] inline __m256i everyByte(char byte) {
  return _mm256_set1_epi8(byte);
}
[[gnu::target("avx2")]] inline __m256i everyLane(std::int64_t value) {
  return _mm256_set1_epi64x(value);
}
[[gnu::target("avx2")]] inline __m256i isZero(__m256i lanes) {
  return _mm256_cmpeq_epi64(lanes, _mm256_setzero_si256());
}

// The eight bytes before the end of each field, and how long it is.
struct FieldLanes {
  __m256i bytes;
  __m256i sizes;
  __m256i isQuoted;
};

[[gnu::target("avx2")]] inline FieldLanes loaded(const char* bytes, const std::uint32_t* mark,
                                                 std::size_t marksInRow) {
  constexpr std::int64_t kOffset = ~CsvBlock::kQuotedMark;
  const auto marks = [&](std::size_t lane) {
    std::int64_t pair;
    std::memcpy(&pair, mark + lane * marksInRow, sizeof pair);
    return pair;
  };
  const auto word = [&](std::size_t lane) {
    const std::uint32_t end = (mark[lane * marksInRow + 1] & kOffset) - 1;
    std::int64_t value;
    std::memcpy(&value, bytes + end - sizeof value, sizeof value);
    return value;
  };
  const __m256i pairs = _mm256_set_epi64x(marks(3), marks(2), marks(1), marks(0));
  const __m256i begins = _mm256_and_si256(pairs, everyLane(kOffset));
  const __m256i ends = _mm256_and_si256(_mm256_srli_epi64(pairs, 32), everyLane(kOffset));
  return {_mm256_set_epi64x(word(3), word(2), word(1), word(0)),
          _mm256_sub_epi64(_mm256_sub_epi64(ends, begins), everyLane(1)),
          _mm256_and_si256(pairs, everyLane(CsvBlock::kQuotedMark))};
}

// Numbers below 2^52.
[[gnu::target("avx2")]] inline __m256d toDoubles(__m256i numbers) {
  const __m256d base = _mm256_set1_pd(0x1p52);
  return _mm256_sub_pd(_mm256_castsi256_pd(_mm256_or_si256(numbers, _mm256_castpd_si256(base))),
                       base);
}

// Eight digits in each lane, the first in the lowest byte.
[[gnu::target("avx2")]] inline __m256i joinedDigits(__m256i digits) {
  const __m256i twos = _mm256_maddubs_epi16(digits, _mm256_set1_epi16(1 << 8 | 10));
  const __m256i fours = _mm256_madd_epi16(twos, _mm256_set1_epi32(1 << 16 | 100));
  return _mm256_add_epi64(_mm256_mul_epu32(fours, everyLane(10'000)), _mm256_srli_epi64(fours, 32));
}

// Exact, since whole numbers below 10^8 and powers of ten up to 10^7 are doubles and a division
// rounds once. The result has a bit for each lane whose field was such a number, or empty.
[[gnu::target("avx2")]] inline unsigned parseLanes(const FieldLanes& fields, double* values) {
  const __m256i kNoBits = _mm256_setzero_si256();
  const __m256i kAllBits = everyLane(-1);
  const __m256i present = _mm256_sllv_epi64(
      kAllBits, _mm256_sub_epi64(everyLane(64), _mm256_slli_epi64(fields.sizes, 3)));
  __m256i bytes = _mm256_blendv_epi8(everyByte('0'), fields.bytes, present);

  // The masks of the first byte and, after a minus, of the first digit.
  __m256i first = _mm256_andnot_si256(_mm256_slli_epi64(present, 8), present);
  const __m256i minus = _mm256_and_si256(_mm256_cmpeq_epi8(bytes, everyByte('-')), first);
  const __m256i isPositive = isZero(minus);
  first = _mm256_sllv_epi64(first, _mm256_andnot_si256(isPositive, everyLane(8)));
  bytes = _mm256_xor_si256(bytes, _mm256_and_si256(minus, everyByte('-' ^ '0')));

  // The digits before the point are moved to those after it. Without a point all are before it.
  const __m256i points = _mm256_cmpeq_epi8(bytes, everyByte('.'));
  const __m256i before = _mm256_andnot_si256(points, _mm256_add_epi64(points, kAllBits));
  const __m256i after =
      _mm256_andnot_si256(_mm256_or_si256(_mm256_slli_epi64(before, 8), everyLane(0xFF)), kAllBits);
  const __m256i moved = _mm256_andnot_si256(isZero(points), everyLane(8));
  const __m256i whole = _mm256_sllv_epi64(_mm256_and_si256(bytes, before), moved);
  const __m256i joined = _mm256_or_si256(_mm256_or_si256(whole, _mm256_and_si256(bytes, after)),
                                         _mm256_andnot_si256(isZero(points), everyLane('0')));
  const __m256i digits = _mm256_sub_epi8(joined, everyByte('0'));

  const __m256i kPowers =
      _mm256_set_epi32(10'000'000, 1'000'000, 100'000, 10'000, 1000, 100, 10, 1);
  const __m256i decimals = _mm256_sad_epu8(_mm256_and_si256(after, everyByte(1)), kNoBits);
  const __m256i powers =
      _mm256_and_si256(_mm256_permutevar8x32_epi32(kPowers, decimals), everyLane(0xFFFFFFFF));
  const __m256d magnitudes = _mm256_div_pd(toDoubles(joinedDigits(digits)), toDoubles(powers));
  const __m256d numbers = _mm256_or_pd(
      magnitudes, _mm256_castsi256_pd(_mm256_andnot_si256(isPositive, everyLane(INT64_MIN))));

  const __m256i isEmpty = isZero(fields.sizes);
  _mm256_storeu_pd(values, _mm256_blendv_pd(numbers, _mm256_castsi256_pd(kAllBits),
                                            _mm256_castsi256_pd(isEmpty)));
  static_assert(kNullNumberBits == ~std::uint64_t{0});

  // Sizes are below 2^32, and -1 nowhere.
  const __m256i areDigits = _mm256_cmpeq_epi64(_mm256_max_epu8(digits, everyByte(9)), everyByte(9));
  const __m256i isShort =
      isZero(_mm256_srli_epi64(_mm256_sub_epi64(fields.sizes, everyLane(1)), 3));
  const __m256i hasNoDigit = isZero(_mm256_andnot_si256(points, first));
  const __m256i zeros = _mm256_and_si256(_mm256_cmpeq_epi8(bytes, everyByte('0')), first);
  const __m256i hasOneZero = isZero(_mm256_andnot_si256(points, _mm256_slli_epi64(zeros, 8)));
  const __m256i isNumber = _mm256_andnot_si256(
      hasNoDigit, _mm256_and_si256(_mm256_and_si256(areDigits, isShort), hasOneZero));
  const __m256i isParsed =
      _mm256_and_si256(_mm256_or_si256(isNumber, isEmpty), isZero(fields.isQuoted));
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_castsi256_pd(isParsed)));
}

[[gnu::target("avx2")]] std::uint64_t parseWide(const CsvBlock& block, std::size_t column,
                                                long long row, std::size_t rowCount,
                                                double* values) {
  const std::uint32_t* mark = block.marksOfRow(row) + column;
  std::uint64_t parsed = 0;
  for (std::size_t i = 0; i + kLanes <= rowCount; i += kLanes) {
    const FieldLanes fields = loaded(block.bytes(), mark, block.marksInRow());
    parsed |= std::uint64_t{parseLanes(fields, values + i)} << i;
    mark += kLanes * block.marksInRow();
  }
  return parsed;
}
#endif

Parse fastestParse() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return parseWide;
  }
#endif
  return parseNone;
}

}  // namespace

std::uint64_t parseShortDecimals(const CsvBlock& block, std::size_t column, long long row,
                                 std::size_t rowCount, double* values) {
  static const Parse parse = fastestParse();
  return parse(block, column, row, rowCount, values);
}

}  // namespace kelvarin
