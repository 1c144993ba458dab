#include "columnar/codecs/piece_printer.h"

#include <nmmintrin.h>

#include "columnar/codecs/integer_kernels.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kTenTo8 = 100'000'000;

__m128i loadWord(const PiecePrinter::Word& word) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(word.data()));
}

void storeWord(unsigned char* out, __m128i word) {
  _mm_storeu_si128(reinterpret_cast<__m128i_u*>(out), word);
}

// Calls print(number, out) for each, which prints `width` bytes.
template <typename Print>
void printEach(std::span<const std::uint64_t> numbers, const PiecePrinter::Word& behind, int width,
               unsigned char* out, std::size_t step, Print print) {
  const __m128i word = loadWord(behind);
  for (const std::uint64_t number : numbers) {
    print(number, out);
    storeWord(out + width, word);
    out += step;
  }
}

// Calls print(number, out) for each, which returns the end.
template <typename Print>
void printEach(std::span<const std::uint64_t> numbers, const PiecePrinter::Word& behind,
               std::size_t sizeBehind, unsigned char* out, std::size_t step, std::uint8_t* sizes,
               Print print) {
  const __m128i word = loadWord(behind);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    unsigned char* const end = print(numbers[i], out);
    storeWord(end, word);
    sizes[i] = static_cast<std::uint8_t>(static_cast<std::size_t>(end - out) + sizeBehind);
    out += step;
  }
}

// The first `width` of 16 hexadecimal digits count.
struct HexDigits {
  __m128i digits;  // by value
  int shift;

  HexDigits(const char (&characters)[17], int width)
      : digits(_mm_loadu_si128(reinterpret_cast<const __m128i_u*>(characters))),
        shift(4 * (kMaxHexDigits - width)) {}

  void operator()(std::uint64_t number, unsigned char* out) const {
    const auto bytes = static_cast<long long>(__builtin_bswap64(number << shift));
    const __m128i lowest = _mm_set1_epi8(0x0F);
    const __m128i pairs = _mm_cvtsi64_si128(bytes);
    const __m128i values = _mm_unpacklo_epi8(_mm_and_si128(_mm_srli_epi64(pairs, 4), lowest),
                                             _mm_and_si128(pairs, lowest));
    storeWord(out, _mm_shuffle_epi8(digits, values));
  }
};

}  // namespace

void PiecePrinter::printFixedWidth(std::span<const std::uint64_t> numbers, const Word& behind,
                                   unsigned char* out, std::size_t step) const {
  const int width = m_width;
  switch (m_kind) {
    case PieceKind::digits:
      if (width <= 8) {
        return printEach(numbers, behind, width, out, step,
                         [shift = 8 * (8 - width)](std::uint64_t number, unsigned char* to) {
                           storePacked(to,
                                       eightDigits(static_cast<std::uint32_t>(number)) >> shift);
                         });
      }
      return printEach(
          numbers, behind, width, out, step,
          [width](std::uint64_t number, unsigned char* to) { printDigits(number, width, to); });
    case PieceKind::lowerHex:
      return printEach(numbers, behind, width, out, step, HexDigits("0123456789abcdef", width));
    case PieceKind::upperHex:
      return printEach(numbers, behind, width, out, step, HexDigits("0123456789ABCDEF", width));
    default:
      return printEach(
          numbers, behind, static_cast<int>(m_moment.size()), out, step,
          [this](std::uint64_t number, unsigned char* to) { m_moment.print(number, to); });
  }
}

std::size_t PiecePrinter::printVaryingWidth(std::span<const std::uint64_t> numbers,
                                            const Word& behind, std::size_t sizeBehind,
                                            unsigned char* out, std::size_t step,
                                            std::uint8_t* sizes) const {
  const auto print = [&](auto printOne) {
    printEach(numbers, behind, sizeBehind, out, step, sizes, printOne);
  };
  const std::uint64_t largest = kernels::largestOf(numbers);
  const bool areShort = largest < kTenTo8;
  switch (m_kind) {
    case PieceKind::number:
      if (largest < kSmallNumbers.size()) {
        print([](std::uint64_t number, unsigned char* to) {
          const SmallNumber& small = kSmallNumbers[number];
          std::memcpy(to, &small, sizeof small);
          return to + small.count;
        });
        return sizeof SmallNumber::digits;
      }
      if (areShort) {
        print([](std::uint64_t number, unsigned char* to) {
          const int width = digitCount(number);
          printUpToEightDigits(static_cast<std::uint32_t>(number), width, to);
          return to + width;
        });
        return 8;
      }
      print([](std::uint64_t number, unsigned char* to) { return printShortest(number, to); });
      break;
    case PieceKind::varyingDigits:
      print([](std::uint64_t number, unsigned char* to) { return printVaryingDigits(number, to); });
      break;
    default:
      if (areShort && m_width < 8) {
        print([this](std::uint64_t number, unsigned char* to) {
          return printShortDecimal(number, digitsOfDecimal(number), to);
        });
        return 8 + 1;
      }
      print([this](std::uint64_t number, unsigned char* to) { return printDecimal(number, to); });
  }
  return longestNumber();
}

}  // namespace kelvarin
