#include "columnar/codecs/number_kernels.h"

#include <algorithm>
#include <array>
#include <bit>

#include "base/byte_cursor.h"
#include "base/null_number.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelvarin::kernels {

namespace {

// The bits of 2^52; or-ed with an integer below 2^52 they are the double 2^52 + integer.
constexpr std::uint64_t kTwoTo52Bits = 0x4330000000000000ull;
constexpr double kTwoTo52 = 4503599627370496.0;

// A Scale in the form that the loop needs.
struct Factors {
  std::uint64_t missing;
  double offset;
  double power;
};

template <bool kDivides>
[[gnu::always_inline]] inline void unscaleBatch(std::span<const std::uint32_t> codes,
                                                const Factors& factors, unsigned char* numbers) {
  const std::uint64_t missing = factors.missing;
  const double offset = factors.offset;
  const double power = factors.power;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::uint64_t code = codes[i];
    double value = std::bit_cast<double>(kTwoTo52Bits | code) - offset;
    if constexpr (kDivides) {
      value /= power;
    }
    std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    bits |= code == missing ? kNullNumberBits : 0;
    storePacked(numbers + i * sizeof bits, bits);
  }
}

[[gnu::always_inline]] inline void unscaleCodes(std::span<const std::uint32_t> codes,
                                                const Factors& factors, unsigned char* numbers) {
  if (factors.power == 1.0) {
    unscaleBatch<false>(codes, factors, numbers);
  } else {
    unscaleBatch<true>(codes, factors, numbers);
  }
}

// Compiled once for all processors and once for those with wider registers. The results are the
// same: every operation is exact or rounded as the standard says.
using UnscaleCodes = void (*)(std::span<const std::uint32_t>, const Factors&, unsigned char*);

void unscalePortably(std::span<const std::uint32_t> codes, const Factors& factors,
                     unsigned char* numbers) {
  unscaleCodes(codes, factors, numbers);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] void unscaleWide(std::span<const std::uint32_t> codes,
                                         const Factors& factors, unsigned char* numbers) {
  unscaleCodes(codes, factors, numbers);
}
#endif

UnscaleCodes fastestUnscale() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return unscaleWide;
  }
#endif
  return unscalePortably;
}

template <bool kDivides>
void addDeltas(std::span<const std::uint32_t> codes, std::uint64_t missing, double power,
               std::int64_t& integer, unsigned char* numbers) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const bool isMissing = codes[i] == missing;
    integer += isMissing ? 0 : zigzagDecoded(codes[i]);
    double value = static_cast<double>(integer);
    if constexpr (kDivides) {
      value /= power;
    }
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    storePacked(numbers + i * sizeof bits, isMissing ? kNullNumberBits : bits);
  }
}

#if defined(__x86_64__)
constexpr std::size_t kLanes = 4;

[[gnu::target("avx2")]] inline __m256i every(std::uint64_t value) {
  return _mm256_set1_epi64x(static_cast<std::int64_t>(value));
}

// Each lane becomes the sum of itself and those before it.
[[gnu::target("avx2")]] inline __m256i runningSums(__m256i deltas) {
  const __m256i pairs = _mm256_add_epi64(deltas, _mm256_slli_si256(deltas, sizeof(std::int64_t)));
  // The upper half gets the sum of the lower one.
  const __m256i lower = _mm256_permute4x64_epi64(pairs, _MM_SHUFFLE(1, 1, 1, 1));
  return _mm256_add_epi64(pairs, _mm256_blend_epi32(_mm256_setzero_si256(), lower, 0xF0));
}

// The same, four numbers with each step. All integers are between -2^51 and 2^51, so that the
// conversion by adding 1.5 * 2^52 is exact.
template <bool kDivides>
[[gnu::target("avx2")]] void addDeltasWide(std::span<const std::uint32_t> codes,
                                           std::uint64_t missing, double power,
                                           std::int64_t& integer, unsigned char* numbers) {
  constexpr double kMiddle = 1.5 * kTwoTo52;
  const std::size_t wide = codes.size() / kLanes * kLanes;
  __m256i sum = every(static_cast<std::uint64_t>(integer));
  for (std::size_t i = 0; i < wide; i += kLanes) {
    const __m256i code = _mm256_cvtepu32_epi64(
        _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(codes.data() + i)));
    const __m256i isMissing = _mm256_cmpeq_epi64(code, every(missing));
    const __m256i isNegative =
        _mm256_sub_epi64(_mm256_setzero_si256(), _mm256_and_si256(code, every(1)));
    const __m256i delta = _mm256_xor_si256(_mm256_srli_epi64(code, 1), isNegative);
    const __m256i sums = runningSums(_mm256_andnot_si256(isMissing, delta));
    const __m256i integers = _mm256_add_epi64(sum, sums);
    sum = _mm256_add_epi64(sum, _mm256_permute4x64_epi64(sums, _MM_SHUFFLE(3, 3, 3, 3)));
    const __m256i shifted =
        _mm256_add_epi64(integers, every(std::bit_cast<std::uint64_t>(kMiddle)));
    __m256d value = _mm256_sub_pd(_mm256_castsi256_pd(shifted), _mm256_set1_pd(kMiddle));
    if constexpr (kDivides) {
      value = _mm256_div_pd(value, _mm256_set1_pd(power));
    }
    const __m256i bits = _mm256_or_si256(_mm256_castpd_si256(value), isMissing);
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(numbers + i * sizeof(double)), bits);
  }
  integer = _mm256_extract_epi64(sum, 0);
  addDeltas<kDivides>(codes.subspan(wide), missing, power, integer,
                      numbers + wide * sizeof(double));
}
#endif

using AddDeltas = void (*)(std::span<const std::uint32_t>, std::uint64_t, double, std::int64_t&,
                           unsigned char*);

struct DeltaLoops {
  AddDeltas forAll;
  AddDeltas forSmallIntegers;
};

template <bool kDivides>
DeltaLoops deltaLoops() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return {addDeltas<kDivides>, addDeltasWide<kDivides>};
  }
#endif
  return {addDeltas<kDivides>, addDeltas<kDivides>};
}

template <int kPlanes>
void splitInto(Numbers numbers, unsigned char* out) {
  const std::size_t rows = numbers.size();
  for (int plane = 0; plane < kPlanes; ++plane) {
    for (std::size_t i = 0; i < rows; ++i) {
      out[static_cast<std::size_t>(plane) * rows + i] =
          static_cast<unsigned char>(numbers[i] >> (56 - 8 * plane));
    }
  }
  // All but the last numbers are written whole, and the next one overwrites the highest bytes.
  constexpr std::size_t kRest = 8 - kPlanes;
  out += kPlanes * rows;
  const std::size_t whole = rows - std::min<std::size_t>((7 + kRest) / kRest, rows);
  for (std::size_t i = 0; i < whole; ++i) {
    storePacked(out + kRest * i, numbers[i]);
  }
  for (std::size_t i = whole; i < rows; ++i) {
    std::memcpy(out + kRest * i, &numbers[i], kRest);
  }
}

template <int kPlanes>
void joinFrom(const unsigned char* bytes, std::size_t rows, unsigned char* numbers) {
  constexpr std::size_t kRest = 8 - kPlanes;
  constexpr std::uint64_t kRestBits = (1ull << (8 * kRest)) - 1;
  const unsigned char* rest = bytes + kPlanes * rows;
  const auto joinOne = [&](std::size_t i, std::uint64_t number) {
    for (int plane = 0; plane < kPlanes; ++plane) {
      number |= std::uint64_t{bytes[static_cast<std::size_t>(plane) * rows + i]}
                << (56 - 8 * plane);
    }
    storePacked(numbers + i * sizeof number, number);
  };
  // All but the last numbers are read with a load that includes bytes of the following ones.
  const std::size_t whole = rows - std::min<std::size_t>((7 + kRest) / kRest, rows);
  for (std::size_t i = 0; i < whole; ++i) {
    joinOne(i, loadPacked<std::uint64_t>(rest + kRest * i) & kRestBits);
  }
  for (std::size_t i = whole; i < rows; ++i) {
    std::uint64_t number = 0;
    std::memcpy(&number, rest + kRest * i, kRest);
    joinOne(i, number);
  }
}

using Split = void (*)(Numbers, unsigned char*);
using Join = void (*)(const unsigned char*, std::size_t, unsigned char*);
constexpr Split kSplits[] = {nullptr,      splitInto<1>, splitInto<2>, splitInto<3>,
                             splitInto<4>, splitInto<5>, splitInto<6>, splitInto<7>};
constexpr Join kJoins[] = {nullptr,     joinFrom<1>, joinFrom<2>, joinFrom<3>,
                           joinFrom<4>, joinFrom<5>, joinFrom<6>, joinFrom<7>};

}  // namespace

void storeFrameOfReference(std::span<const std::int64_t> integers, std::int64_t base,
                           CodeWidth width, unsigned char* codes) {
  const StoredCodes stored(codes, integers.size(), width);
  std::uint32_t batch[kRowsInBatch];
  for (std::size_t first = 0; first < integers.size(); first += kRowsInBatch) {
    const std::size_t count = std::min(kRowsInBatch, integers.size() - first);
    for (std::size_t i = 0; i < count; ++i) {
      const std::int64_t integer = integers[first + i];
      batch[i] = static_cast<std::uint32_t>(integer == kMissingInteger ? -1 : integer - base);
    }
    stored.store(first, {batch, count});
  }
}

void unscale(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers) {
  const Factors factors{.missing = scale.missing,
                        .offset = kTwoTo52 - static_cast<double>(scale.base),
                        .power = powerOfTen(scale.exponent)};
  static const UnscaleCodes convert = fastestUnscale();
  codes.forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
    convert(batch, factors, numbers + first * sizeof(double));
    return true;
  });
}

void unscaleDeltas(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers) {
  const double power = powerOfTen(scale.exponent);
  const DeltaLoops loops = power == 1.0 ? deltaLoops<false>() : deltaLoops<true>();
  // After a batch, integers are still below 2^51.
  constexpr std::int64_t kSmall = std::int64_t{1} << 50;
  static_assert(kRowsInBatch << 32 < kSmall);
  std::int64_t integer = scale.base;
  codes.forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
    const bool isSmall = -kSmall < integer && integer < kSmall;
    const AddDeltas add = isSmall ? loops.forSmallIntegers : loops.forAll;
    add(batch, scale.missing, power, integer, numbers + first * sizeof(double));
    return true;
  });
}

void split(Numbers numbers, int planes, unsigned char* out) {
  kSplits[planes](numbers, out);
}

void join(const unsigned char* bytes, std::size_t rows, int planes, unsigned char* numbers) {
  kJoins[planes](bytes, rows, numbers);
}

std::size_t countOthers(Numbers numbers, std::uint64_t common) {
  return static_cast<std::size_t>(std::count_if(
      numbers.begin(), numbers.end(), [=](std::uint64_t number) { return number != common; }));
}

}  // namespace kelvarin::kernels
