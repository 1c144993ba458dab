#include "columnar/codecs/number_scale.h"

#include <bit>
#include <cmath>

#include "base/byte_cursor.h"
#include "base/null_number.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/number_kernels.h"

namespace kelvarin {

bool NumberScale::isSound() const {
  constexpr int kMaxShift = 63;
  switch (kind) {
    case Kind::decimal:
      return exponent <= kMaxExponent;
    case Kind::binary:
    case Kind::bits:
      return exponent <= kMaxShift;
  }
  return false;
}

bool IntegerSteps::isSound(const NumberScale& scale) const {
  return step > 0 && (scale.kind == NumberScale::Kind::bits || first <= 2 * kIntegerOffset);
}

std::uint64_t IntegerSteps::largest(const NumberScale& scale) const {
  const std::uint64_t last =
      scale.kind == NumberScale::Kind::bits ? UINT64_MAX : 2 * kIntegerOffset;
  return (last - first) / step;
}

namespace kernels {

namespace {

// Added to a number below 2^51, it leaves the number, rounded to an integer, in the low bits.
constexpr double kRounding = 0x1.8p52;
constexpr auto kRoundingBits = std::bit_cast<std::uint64_t>(kRounding);
constexpr double kLargestRounded = 0x1p50;
constexpr double kLargestInteger = 0x1p53;
constexpr auto kMinusZero = std::bit_cast<std::uint64_t>(-0.0);

// 2^exponent for bits as well.
double divisorOf(const NumberScale& scale) {
  return scale.kind == NumberScale::Kind::decimal ? powerOfTen(scale.exponent)
                                                  : std::ldexp(1.0, scale.exponent);
}

// Returns the bits that are set in any correction, as the other loops do.
[[gnu::always_inline]] inline std::uint64_t takeDecimals(std::span<const std::uint64_t> numbers,
                                                         double power, std::uint64_t* integers,
                                                         std::uint64_t* corrections) {
  std::uint64_t any = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::uint64_t bits = numbers[i];
    const double product = std::bit_cast<double>(bits) * power;
    const double shifted = product + kRounding;
    const double back = (shifted - kRounding) / power;
    const auto difference = static_cast<std::int64_t>(bits - std::bit_cast<std::uint64_t>(back));
    // False for NaNs.
    const bool isSmall = std::fabs(product) < kLargestRounded;
    const std::uint64_t correction = isSmall ? zigzagEncoded(difference) : kNoCorrection;
    integers[i] = std::bit_cast<std::uint64_t>(shifted) - kRoundingBits + kIntegerOffset;
    corrections[i] = correction;
    any |= correction;
  }
  return any;
}

// The loops are compiled once for all processors and once for those with wider registers. The
// results are the same: every operation is exact or rounded as the standard says.
using TakeDecimals = std::uint64_t (*)(std::span<const std::uint64_t>, double, std::uint64_t*,
                                       std::uint64_t*);

std::uint64_t takeDecimalsPortably(std::span<const std::uint64_t> numbers, double power,
                                   std::uint64_t* integers, std::uint64_t* corrections) {
  return takeDecimals(numbers, power, integers, corrections);
}

enum class Operation { none, division, product };

// 2^84 with the upper half of an integer in its last 32 bits, and 2^52 with the lower half.
constexpr std::uint64_t kUpperBits = 0x4530000000000000ull;
constexpr std::uint64_t kLowerBits = 0x4330000000000000ull;
// What the two have too much, and the offset of the integers.
constexpr double kTooMuch = 0x1p84 + 0x1p52 + 0x1p53;

template <Operation kOperation, bool kHasStep>
[[gnu::always_inline]] inline void makeEach(std::span<const std::uint64_t> counts, double factor,
                                            const IntegerSteps& steps, unsigned char* numbers) {
  const std::uint64_t first = steps.first;
  const std::uint64_t step = steps.step;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const std::uint64_t integer = first + (kHasStep ? counts[i] * step : counts[i]);
    const double upper = std::bit_cast<double>(integer >> 32 | kUpperBits) - kTooMuch;
    double value = upper + std::bit_cast<double>((integer & 0xFFFFFFFF) | kLowerBits);
    if constexpr (kOperation == Operation::division) {
      value /= factor;
    } else if constexpr (kOperation == Operation::product) {
      value *= factor;
    }
    storePacked(numbers + i * sizeof value, std::bit_cast<std::uint64_t>(value));
  }
}

template <Operation kOperation>
[[gnu::always_inline]] inline void makeEach(std::span<const std::uint64_t> counts, double factor,
                                            const IntegerSteps& steps, unsigned char* numbers) {
  if (steps.step == 1) {
    makeEach<kOperation, false>(counts, factor, steps, numbers);
  } else {
    makeEach<kOperation, true>(counts, factor, steps, numbers);
  }
}

[[gnu::always_inline]] inline void makeQuotients(std::span<const std::uint64_t> counts,
                                                 const NumberScale& scale, double divisor,
                                                 const IntegerSteps& steps,
                                                 unsigned char* numbers) {
  if (scale.exponent == 0) {
    makeEach<Operation::none>(counts, 1.0, steps, numbers);
  } else if (scale.kind == NumberScale::Kind::binary) {
    makeEach<Operation::product>(counts, 1.0 / divisor, steps, numbers);
  } else {
    makeEach<Operation::division>(counts, divisor, steps, numbers);
  }
}

using MakeQuotients = void (*)(std::span<const std::uint64_t>, const NumberScale&, double,
                               const IntegerSteps&, unsigned char*);

void makeQuotientsPortably(std::span<const std::uint64_t> counts, const NumberScale& scale,
                           double divisor, const IntegerSteps& steps, unsigned char* numbers) {
  makeQuotients(counts, scale, divisor, steps, numbers);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] std::uint64_t takeDecimalsWide(std::span<const std::uint64_t> numbers,
                                                       double power, std::uint64_t* integers,
                                                       std::uint64_t* corrections) {
  return takeDecimals(numbers, power, integers, corrections);
}

[[gnu::target("avx2")]] void makeQuotientsWide(std::span<const std::uint64_t> counts,
                                               const NumberScale& scale, double divisor,
                                               const IntegerSteps& steps, unsigned char* numbers) {
  makeQuotients(counts, scale, divisor, steps, numbers);
}
#endif

struct Loops {
  TakeDecimals takeDecimals = takeDecimalsPortably;
  MakeQuotients makeQuotients = makeQuotientsPortably;
};

Loops fastestLoops() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return {takeDecimalsWide, makeQuotientsWide};
  }
#endif
  return {};
}

const Loops& loops() {
  static const Loops fastest = fastestLoops();
  return fastest;
}

// Numbers with 53 bits cannot be rounded as above, but conversion rounds nothing.
std::uint64_t takeBinary(std::span<const std::uint64_t> numbers, double divisor,
                         std::uint64_t* integers, std::uint64_t* corrections) {
  std::uint64_t any = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const double product = std::bit_cast<double>(numbers[i]) * divisor;
    const bool isSmall = std::fabs(product) <= kLargestInteger;
    const auto integer = static_cast<std::int64_t>(isSmall ? product : 0.0);
    const bool isExact = static_cast<double>(integer) == product && numbers[i] != kMinusZero;
    integers[i] = static_cast<std::uint64_t>(integer) + kIntegerOffset;
    corrections[i] = isSmall && isExact ? 0 : kNoCorrection;
    any |= corrections[i];
  }
  return any;
}

std::uint64_t takeBits(std::span<const std::uint64_t> numbers, int shift, std::uint64_t* integers,
                       std::uint64_t* corrections) {
  const std::uint64_t low = (std::uint64_t{1} << shift) - 1;
  std::uint64_t any = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool isShort = (numbers[i] & low) == 0 && numbers[i] != kNullNumberBits;
    integers[i] = numbers[i] >> shift;
    corrections[i] = isShort ? 0 : kNoCorrection;
    any |= corrections[i];
  }
  return any;
}

}  // namespace

bool takeIntegers(std::span<const std::uint64_t> numbers, const NumberScale& scale,
                  std::uint64_t* integers, std::uint64_t* corrections) {
  const double divisor = divisorOf(scale);
  switch (scale.kind) {
    case NumberScale::Kind::decimal:
      return loops().takeDecimals(numbers, divisor, integers, corrections) == 0;
    case NumberScale::Kind::binary:
      return takeBinary(numbers, divisor, integers, corrections) == 0;
    case NumberScale::Kind::bits:
      break;
  }
  return takeBits(numbers, scale.exponent, integers, corrections) == 0;
}

void makeNumbers(std::span<const std::uint64_t> counts, const NumberScale& scale,
                 const IntegerSteps& steps, unsigned char* numbers) {
  if (scale.kind != NumberScale::Kind::bits) {
    return loops().makeQuotients(counts, scale, divisorOf(scale), steps, numbers);
  }
  for (std::size_t i = 0; i < counts.size(); ++i) {
    storePacked(numbers + i * sizeof(double), (steps.first + steps.step * counts[i])
                                                  << scale.exponent);
  }
}

}  // namespace kernels

}  // namespace kelvarin
