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

constexpr CodeWidth kCodeWidths[] = {{1, 0}, {1, 1}, {1, 2}, {1, 4}, {2, 0},
                                     {2, 1}, {2, 2}, {2, 4}, {2, 8}, {4, 0}};

struct ScaledNumber {
  std::int64_t integer;
  bool isExact;
};

inline ScaledNumber scaledNumber(std::uint64_t bits, double power) {
  const double value = std::bit_cast<double>(bits);
  const double product = value * power;
  const double shifted = product + kRounding;
  // Modulo 2^64: numbers that are too large give nonsense, and are refused below.
  const auto integer = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(shifted) -
                                                 std::bit_cast<std::uint64_t>(kRounding));
  const double back = (shifted - kRounding) / power;
  const bool isSmall = product < kLargestScaled && product > -kLargestScaled;
  const bool isSame = std::bit_cast<std::uint64_t>(back) == bits;
  return {integer, (isSmall & isSame) != 0};
}

// Rows are taken in pieces whose parts fit on the stack.
constexpr std::size_t kPiece = 512;

// All the codes that a byte holds, a byte each.
template <int kBits>
constexpr auto makeSpreadBytes() {
  std::array<std::array<unsigned char, 8 / kBits>, 256> spread{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    for (unsigned i = 0; i < 8 / kBits; ++i) {
      spread[byte][i] = static_cast<unsigned char>(byte >> (kBits * i) & ((1u << kBits) - 1));
    }
  }
  return spread;
}

// `out` has room for a multiple of 8 codes.
template <int kBits>
void unpackCodesOf(const unsigned char* packed, std::size_t rows, unsigned char* out) {
  static constexpr auto kSpread = makeSpreadBytes<kBits>();
  constexpr std::size_t kInByte = 8 / kBits;
  for (std::size_t i = 0; i < rows; i += kInByte) {
    std::memcpy(out + i, kSpread[*packed++].data(), kInByte);
  }
}

void unpackCodes(const unsigned char* packed, std::size_t rows, int bits, unsigned char* out) {
  switch (bits) {
    case 0:
      std::memset(out, 0, rows);
      return;
    case 1:
      return unpackCodesOf<1>(packed, rows, out);
    case 2:
      return unpackCodesOf<2>(packed, rows, out);
    case 4:
      return unpackCodesOf<4>(packed, rows, out);
    default:
      std::memcpy(out, packed, rows);
  }
}

// How a column of codes becomes numbers.
struct Scale {
  std::uint64_t missing;  // a code, or more than any code
  double offset;
  double power;
};

template <typename Low, bool kDivides>
void unscalePiece(const unsigned char* low, const unsigned char* high, std::size_t rows,
                  const Scale& scale, unsigned char* numbers) {
  const std::uint64_t missing = scale.missing;
  const double offset = scale.offset;
  const double power = scale.power;
  for (std::size_t i = 0; i < rows; ++i) {
    std::uint64_t code = loadPacked<Low>(low + i * sizeof(Low));
    if constexpr (sizeof(Low) < 4) {
      code |= std::uint64_t{high[i]} << (8 * sizeof(Low));
    }
    double value = std::bit_cast<double>(kTwoTo52Bits | code) - offset;
    if constexpr (kDivides) {
      value /= power;
    }
    std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    bits |= code == missing ? kNullNumberBits : 0;
    storePacked(numbers + i * sizeof bits, bits);
  }
}

template <typename Low>
void unscaleCodes(const unsigned char* codes, std::size_t rows, int highBits, const Scale& scale,
                  unsigned char* numbers) {
  const unsigned char* packed = codes + rows * sizeof(Low);
  const auto convert = scale.power == 1.0 ? unscalePiece<Low, false> : unscalePiece<Low, true>;
  unsigned char high[kPiece] = {};
  for (std::size_t done = 0; done < rows; done += kPiece) {
    const std::size_t count = std::min(kPiece, rows - done);
    if (highBits > 0) {
      unpackCodes(packed + done * static_cast<std::size_t>(highBits) / 8, count, highBits, high);
    }
    convert(codes + done * sizeof(Low), high, count, scale, numbers + done * sizeof(double));
  }
}

template <typename Low>
void storeLowParts(std::span<const std::int64_t> integers, std::int64_t base, unsigned char* out) {
  for (std::size_t i = 0; i < integers.size(); ++i) {
    const std::int64_t integer = integers[i];
    const std::int64_t code = integer == kMissingInteger ? -1 : integer - base;
    storePacked(out + i * sizeof(Low), static_cast<Low>(code));
  }
}

void storeHighParts(std::span<const std::int64_t> integers, std::int64_t base, CodeWidth width,
                    unsigned char* out) {
  const unsigned mask = (1u << width.highBits) - 1;
  std::uint8_t high[kPiece];
  for (std::size_t done = 0; done < integers.size(); done += kPiece) {
    const std::size_t count = std::min(kPiece, integers.size() - done);
    for (std::size_t i = 0; i < count; ++i) {
      const std::int64_t integer = integers[done + i];
      const std::int64_t code = integer == kMissingInteger ? -1 : integer - base;
      high[i] = static_cast<std::uint8_t>(code >> (8 * width.lowBytes) & mask);
    }
    packCodes({high, count}, width.highBits, out);
    out += packedCodesSize(count, width.highBits);
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

template <int kBits>
void packCodesOf(std::span<const std::uint8_t> codes, unsigned char* out) {
  constexpr std::size_t kInByte = 8 / kBits;
  for (std::size_t i = 0; i < codes.size(); i += kInByte) {
    unsigned byte = 0;
    for (std::size_t k = 0; k < kInByte && i + k < codes.size(); ++k) {
      byte |= static_cast<unsigned>(codes[i + k]) << (kBits * k);
    }
    *out++ = static_cast<unsigned char>(byte);
  }
}

}  // namespace

double powerOfTen(int exponent) {
  return kPowersOfTen[exponent];
}

bool isExactScaled(std::uint64_t number, int exponent) {
  return number == kNullNumberBits || scaledNumber(number, powerOfTen(exponent)).isExact;
}

ScaledRange scale(Numbers numbers, int exponent, std::int64_t* integers) {
  const double power = powerOfTen(exponent);
  std::int64_t lowest = INT64_MAX;
  std::int64_t highest = INT64_MIN;
  std::uint64_t inexact = 0;
  std::uint64_t missingCount = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::uint64_t bits = numbers[i];
    const ScaledNumber number = scaledNumber(bits, power);
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

std::optional<CodeWidth> codeWidthOf(int bits) {
  for (const CodeWidth width : kCodeWidths) {
    if (width.bits() == bits) {
      return width;
    }
  }
  return std::nullopt;
}

std::optional<CodeWidth> codeWidthFor(std::uint64_t largestCode) {
  for (const CodeWidth width : kCodeWidths) {
    if (largestCode >> width.bits() == 0) {
      return width;
    }
  }
  return std::nullopt;
}

std::size_t codesSize(std::size_t rows, CodeWidth width) {
  return rows * static_cast<std::size_t>(width.lowBytes) + packedCodesSize(rows, width.highBits);
}

void storeCodes(std::span<const std::int64_t> integers, std::int64_t base, CodeWidth width,
                unsigned char* codes) {
  switch (width.lowBytes) {
    case 1:
      storeLowParts<std::uint8_t>(integers, base, codes);
      break;
    case 2:
      storeLowParts<std::uint16_t>(integers, base, codes);
      break;
    default:
      storeLowParts<std::uint32_t>(integers, base, codes);
  }
  if (width.highBits > 0) {
    storeHighParts(integers, base, width,
                   codes + integers.size() * static_cast<std::size_t>(width.lowBytes));
  }
}

void unscale(const unsigned char* codes, std::size_t rows, CodeWidth width, bool hasMissing,
             std::int64_t base, int exponent, unsigned char* numbers) {
  const Scale scale{.missing = hasMissing ? (1ull << width.bits()) - 1 : UINT64_MAX,
                    .offset = kTwoTo52 - static_cast<double>(base),
                    .power = powerOfTen(exponent)};
  switch (width.lowBytes) {
    case 1:
      return unscaleCodes<std::uint8_t>(codes, rows, width.highBits, scale, numbers);
    case 2:
      return unscaleCodes<std::uint16_t>(codes, rows, width.highBits, scale, numbers);
    default:
      return unscaleCodes<std::uint32_t>(codes, rows, width.highBits, scale, numbers);
  }
}

void split(Numbers numbers, int planes, unsigned char* out) {
  kSplits[planes](numbers, out);
}

void join(const unsigned char* bytes, std::size_t rows, int planes, unsigned char* numbers) {
  kJoins[planes](bytes, rows, numbers);
}

int bitsOfCodes(std::size_t entries) {
  const int bits = static_cast<int>(std::bit_width(entries - 1));
  return bits == 0 ? 0 : static_cast<int>(std::bit_ceil(static_cast<unsigned>(bits)));
}

std::size_t packedCodesSize(std::size_t rows, int bits) {
  return (rows * static_cast<std::size_t>(bits) + 7) / 8;
}

void packCodes(std::span<const std::uint8_t> codes, int bits, unsigned char* out) {
  switch (bits) {
    case 0:
      return;
    case 1:
      return packCodesOf<1>(codes, out);
    case 2:
      return packCodesOf<2>(codes, out);
    case 4:
      return packCodesOf<4>(codes, out);
    default:
      return packCodesOf<8>(codes, out);
  }
}

void lookUp(const unsigned char* codes, std::size_t rows, int bits, const std::uint64_t* table,
            unsigned char* numbers) {
  unsigned char piece[kPiece];
  for (std::size_t done = 0; done < rows; done += kPiece) {
    const std::size_t count = std::min(kPiece, rows - done);
    unpackCodes(codes + done * static_cast<std::size_t>(bits) / 8, count, bits, piece);
    for (std::size_t i = 0; i < count; ++i) {
      storePacked(numbers + (done + i) * sizeof *table, table[piece[i]]);
    }
  }
}

std::size_t countOthers(Numbers numbers, std::uint64_t common) {
  return static_cast<std::size_t>(std::count_if(
      numbers.begin(), numbers.end(), [=](std::uint64_t number) { return number != common; }));
}

}  // namespace kelvarin::kernels
