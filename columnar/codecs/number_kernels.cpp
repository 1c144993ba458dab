#include "columnar/codecs/number_kernels.h"

#include <algorithm>
#include <array>
#include <bit>

#include "base/byte_cursor.h"
#include "base/null_number.h"

namespace kelvarin::kernels {

namespace {

// Adding it to a number below 2^51 leaves the number, rounded to a whole one, in the low bits.
constexpr double kRounding = 6755399441055744.0;  // 2^52 + 2^51
constexpr double kLargestScaled = 1125899906842624.0;  // 2^50
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
// The bits of 2^52; an integer below it or-ed into them gives the double 2^52 + integer.
constexpr std::uint64_t kTwoTo52Bits = 0x4330000000000000ull;
constexpr double kTwoTo52 = 4503599627370496.0;

struct ScaledNumber {
  std::int64_t integer;
  bool isExact;
};

template <bool kDivides>
inline ScaledNumber scaledNumber(std::uint64_t bits, double power) {
  const double value = std::bit_cast<double>(bits);
  const double product = kDivides ? value * power : value;
  const double shifted = product + kRounding;
  // Modulo 2^64: numbers that are too large give nonsense, and are refused below.
  const auto integer = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(shifted) -
                                                 std::bit_cast<std::uint64_t>(kRounding));
  const double back = kDivides ? (shifted - kRounding) / power : shifted - kRounding;
  const bool isSmall = product < kLargestScaled && product > -kLargestScaled;
  const bool isSame = std::bit_cast<std::uint64_t>(back) == bits;
  return {integer, (isSmall & isSame) != 0};
}

// The parts of a Scale as the loop needs them.
struct Factors {
  std::uint64_t missing;
  double offset;
  double power;
};

template <bool kDivides>
[[gnu::always_inline]] inline void unscalePiece(std::span<const std::uint32_t> codes,
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
    unscalePiece<false>(codes, factors, numbers);
  } else {
    unscalePiece<true>(codes, factors, numbers);
  }
}

template <bool kDivides>
[[gnu::always_inline]] inline ScaledRange scaleAll(Numbers numbers, double power,
                                                   std::int64_t* integers) {
  std::int64_t lowest = INT64_MAX;
  std::int64_t highest = INT64_MIN;
  std::uint64_t inexact = 0;
  std::uint64_t missingCount = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::uint64_t bits = numbers[i];
    const ScaledNumber number = scaledNumber<kDivides>(bits, power);
    const bool isMissing = bits == kNullNumberBits;
    const std::int64_t forLowest = isMissing ? INT64_MAX : number.integer;
    const std::int64_t forHighest = isMissing ? INT64_MIN : number.integer;
    lowest = forLowest < lowest ? forLowest : lowest;
    highest = forHighest > highest ? forHighest : highest;
    inexact += !isMissing & !number.isExact;
    missingCount += isMissing;
    integers[i] = isMissing ? kMissingInteger : number.integer;
  }
  return {.isExact = inexact == 0,
          .hasMissing = missingCount > 0,
          .hasValues = missingCount < numbers.size(),
          .lowest = lowest,
          .highest = highest};
}

[[gnu::always_inline]] inline ScaledRange scaleNumbers(Numbers numbers, double power,
                                                       std::int64_t* integers) {
  return power == 1.0 ? scaleAll<false>(numbers, power, integers)
                      : scaleAll<true>(numbers, power, integers);
}

// The loops over all numbers, once for every processor and once for those with wider registers. The
// results are the same: every operation is exact or rounded as the standard says.
struct Loops {
  ScaledRange (*scale)(Numbers, double, std::int64_t*);
  void (*unscale)(std::span<const std::uint32_t>, const Factors&, unsigned char*);
};

ScaledRange scalePortably(Numbers numbers, double power, std::int64_t* integers) {
  return scaleNumbers(numbers, power, integers);
}
void unscalePortably(std::span<const std::uint32_t> codes, const Factors& factors,
                     unsigned char* numbers) {
  unscaleCodes(codes, factors, numbers);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) ScaledRange scaleWide(Numbers numbers, double power,
                                                      std::int64_t* integers) {
  return scaleNumbers(numbers, power, integers);
}
__attribute__((target("avx2"))) void unscaleWide(std::span<const std::uint32_t> codes,
                                                 const Factors& factors, unsigned char* numbers) {
  unscaleCodes(codes, factors, numbers);
}
#endif

const Loops& loops() {
  static const Loops chosen = [] {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) {
      return Loops{scaleWide, unscaleWide};
    }
#endif
    return Loops{scalePortably, unscalePortably};
  }();
  return chosen;
}

template <bool kDivides>
void addDifferences(std::span<const std::uint32_t> codes, std::uint64_t missing, double power,
                    std::int64_t& integer, unsigned char* numbers) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const bool isMissing = codes[i] == missing;
    integer += isMissing ? 0 : unfoldedSign(codes[i]);
    double value = static_cast<double>(integer);
    if constexpr (kDivides) {
      value /= power;
    }
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    storePacked(numbers + i * sizeof bits, isMissing ? kNullNumberBits : bits);
  }
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
  // Numbers are written whole, and their highest bytes overwritten by the next, but at the end.
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
  // A number is read together with bytes of the next ones, but at the end.
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

double powerOfTen(int exponent) {
  return kPowersOfTen[exponent];
}

bool isExactScaled(std::uint64_t number, int exponent) {
  return number == kNullNumberBits || scaledNumber<true>(number, powerOfTen(exponent)).isExact;
}

ScaledRange scale(Numbers numbers, int exponent, std::int64_t* integers) {
  return loops().scale(numbers, powerOfTen(exponent), integers);
}

void storeScaled(std::span<const std::int64_t> integers, std::int64_t base, CodeWidth width,
                 unsigned char* codes) {
  const StoredCodes stored(codes, integers.size(), width);
  std::uint32_t piece[kRowsInPiece];
  for (std::size_t first = 0; first < integers.size(); first += kRowsInPiece) {
    const std::size_t count = std::min(kRowsInPiece, integers.size() - first);
    for (std::size_t i = 0; i < count; ++i) {
      const std::int64_t integer = integers[first + i];
      piece[i] = static_cast<std::uint32_t>(integer == kMissingInteger ? -1 : integer - base);
    }
    stored.store(first, {piece, count});
  }
}

void unscale(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers) {
  const Factors factors{.missing = scale.missing,
                        .offset = kTwoTo52 - static_cast<double>(scale.base),
                        .power = powerOfTen(scale.exponent)};
  const auto convert = loops().unscale;
  codes.forEachPiece([&](std::size_t first, std::span<const std::uint32_t> piece) {
    convert(piece, factors, numbers + first * sizeof(double));
    return true;
  });
}

void unscaleDifferences(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers) {
  const double power = powerOfTen(scale.exponent);
  const auto add = power == 1.0 ? addDifferences<false> : addDifferences<true>;
  std::int64_t integer = scale.base;
  codes.forEachPiece([&](std::size_t first, std::span<const std::uint32_t> piece) {
    add(piece, scale.missing, power, integer, numbers + first * sizeof(double));
    return true;
  });
}

bool takeDifferences(std::span<const std::int64_t> integers, std::int64_t base,
                     std::uint32_t* differences, std::uint32_t& largest) {
  std::int64_t before = base;
  std::uint64_t all = 0;
  std::uint64_t most = 0;
  for (std::size_t i = 0; i < integers.size(); ++i) {
    const bool isMissing = integers[i] == kMissingInteger;
    const std::uint64_t difference = isMissing ? 0 : foldedSign(integers[i] - before);
    before = isMissing ? before : integers[i];
    all |= difference;
    most = std::max(most, difference);
    differences[i] = isMissing ? UINT32_MAX : static_cast<std::uint32_t>(difference);
  }
  largest = static_cast<std::uint32_t>(most);
  return all < UINT32_MAX;
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
