#include "columnar/codecs/piece_printer.h"

#include "columnar/codecs/integer_kernels.h"
#include "columnar/codecs/wide_digits.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kTenTo8 = 100'000'000;
constexpr unsigned kShortWidth = 8;

__m128i loadWord(const void* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i_u*>(bytes));
}

void storeWord(unsigned char* out, __m128i word) {
  _mm_storeu_si128(reinterpret_cast<__m128i_u*>(out), word);
}

// Stores what is printed of each number, and the bytes behind it.
class CellWriter {
 public:
  explicit CellWriter(const PieceCells& cells)
      : m_behind(loadWord(cells.behind.data())),
        m_sizeAround(cells.sizeAround),
        m_out(cells.out),
        m_step(cells.step),
        m_sizes(cells.sizes) {}

  unsigned char* out() const { return m_out; }
  // The cell has so many bytes.
  void finish(unsigned width) {
    storeWord(m_out + width, m_behind);
    m_out += m_step;
  }
  void finishVarying(unsigned width) {
    *m_sizes++ = static_cast<std::uint8_t>(width + m_sizeAround);
    finish(width);
  }

 private:
  const __m128i m_behind;
  const unsigned m_sizeAround;
  unsigned char* m_out;
  const std::size_t m_step;
  std::uint8_t* m_sizes;
};

// Calls use(digits) for the eight digits of each number below 10^8.
template <typename Use>
void forEachShort(std::span<const std::uint64_t> numbers, Use use) {
  std::size_t i = 0;
  for (; i + 1 < numbers.size(); i += 2) {
    const __m128i digits = eightDigitsOfBoth(numbers[i], numbers[i + 1]);
    use(static_cast<std::uint64_t>(_mm_cvtsi128_si64(digits)));
    use(static_cast<std::uint64_t>(_mm_extract_epi64(digits, 1)));
  }
  if (i < numbers.size()) {
    use(static_cast<std::uint64_t>(_mm_cvtsi128_si64(eightDigitsOfBoth(numbers[i], 0))));
  }
}

void printFixedDigits(std::span<const std::uint64_t> numbers, unsigned width, std::uint64_t largest,
                      CellWriter cells) {
  if (width <= kShortWidth) {
    forEachShort(numbers, [&cells, width](std::uint64_t digits) {
      storePacked(cells.out(), charactersOf(digits) >> (8 * (kShortWidth - width)));
      cells.finish(width);
    });
  } else if (largest < kTenTo8 && width <= 2 * kShortWidth) {
    forEachShort(numbers, [&cells, width](std::uint64_t digits) {
      storePacked(cells.out(), charactersOf(std::uint64_t{0}));
      storePacked(cells.out() + width - kShortWidth, charactersOf(digits));
      cells.finish(width);
    });
  } else {
    for (const std::uint64_t number : numbers) {
      printDigits(number, static_cast<int>(width), cells.out());
      cells.finish(width);
    }
  }
}

void printFixedHex(std::span<const std::uint64_t> numbers, unsigned width, bool isUpper,
                   CellWriter cells) {
  const __m128i characters = loadWord(isUpper ? "0123456789ABCDEF" : "0123456789abcdef");
  const __m128i lowest = _mm_set1_epi8(0x0F);
  const unsigned shift = 4 * (kMaxHexDigits - width);
  for (const std::uint64_t number : numbers) {
    const auto bytes = static_cast<std::int64_t>(__builtin_bswap64(number << shift));
    const __m128i pairs = _mm_cvtsi64_si128(bytes);
    const __m128i digits = _mm_unpacklo_epi8(_mm_and_si128(_mm_srli_epi64(pairs, 4), lowest),
                                             _mm_and_si128(pairs, lowest));
    storeWord(cells.out(), _mm_shuffle_epi8(characters, digits));
    cells.finish(width);
  }
}

// What is known of their largest number has as many bits as that at least, or a few more.
bool areSmall(std::span<const std::uint64_t> numbers, std::uint64_t largest) {
  constexpr std::uint64_t kSmall = kSmallNumbers.size() - 1;
  return largest <= kSmall || (largest <= 2 * kSmall && kernels::areAtMost(numbers, kSmall));
}

void printSmall(std::span<const std::uint64_t> numbers, CellWriter cells) {
  for (const std::uint64_t number : numbers) {
    const SmallNumber& small = kSmallNumbers[number];
    std::memcpy(cells.out(), &small, sizeof small);
    cells.finishVarying(small.count);
  }
}

void printShort(std::span<const std::uint64_t> numbers, CellWriter cells) {
  forEachShort(numbers, [&cells](std::uint64_t digits) {
    const unsigned left = bitsOfLeadingZeros(digits, 1);
    storePacked(cells.out(), charactersOf(digits) >> left);
    cells.finishVarying(kShortWidth - left / 8);
  });
}

void printShortDecimals(std::span<const std::uint64_t> numbers, unsigned width,
                        unsigned char separator, CellWriter cells) {
  forEachShort(numbers, [&cells, width, separator](std::uint64_t digits) {
    const unsigned left = bitsOfLeadingZeros(digits, static_cast<int>(width) + 1);
    const std::uint64_t characters = charactersOf(digits) >> left;
    const unsigned whole = kShortWidth - left / 8 - width;
    storePacked(cells.out(), characters);
    cells.out()[whole] = separator;
    storePacked(cells.out() + whole + 1, characters >> (8 * whole));
    cells.finishVarying(whole + 1 + width);
  });
}

}  // namespace

void PiecePrinter::printFixedWidth(std::span<const std::uint64_t> numbers,
                                   const PieceCells& cells) const {
  const auto width = static_cast<unsigned>(m_width);
  switch (m_kind) {
    case PieceKind::digits:
      return printFixedDigits(numbers, width, cells.largest, CellWriter(cells));
    case PieceKind::lowerHex:
      return printFixedHex(numbers, width, false, CellWriter(cells));
    case PieceKind::upperHex:
      return printFixedHex(numbers, width, true, CellWriter(cells));
    default:
      m_moment.printAll(numbers, cells.out, cells.step);
  }
  CellWriter writer(cells);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    writer.finish(static_cast<unsigned>(m_moment.size()));
  }
}

std::size_t PiecePrinter::printVaryingWidth(std::span<const std::uint64_t> numbers,
                                            const PieceCells& cells) const {
  CellWriter writer(cells);
  const auto width = static_cast<unsigned>(m_width);
  if (m_kind == PieceKind::number && areSmall(numbers, cells.largest)) {
    printSmall(numbers, writer);
    return sizeof SmallNumber::digits;
  }
  const bool areShort = cells.largest < kTenTo8;
  if (m_kind == PieceKind::number && areShort) {
    printShort(numbers, writer);
    return kShortWidth;
  }
  if (m_kind == PieceKind::decimal && areShort && width < kShortWidth) {
    printShortDecimals(numbers, width, m_separator, writer);
    return kShortWidth + 1;
  }
  for (const std::uint64_t number : numbers) {
    const unsigned char* const end = printNumber(number, writer.out());
    writer.finishVarying(static_cast<unsigned>(end - writer.out()));
  }
  return longestNumber();
}

std::uint64_t PiecePrinter::sizeOfAll(std::span<const std::uint64_t> numbers,
                                      std::uint64_t largest) const {
  // From each of these numbers on there is a digit more.
  const auto firstLonger = [this](int digits) {
    return m_kind == PieceKind::varyingDigits ? countOfShorterDigits(digits + 1)
                                              : powerOfTen(digits);
  };
  const std::size_t shortest = sizeOf(0);
  std::uint64_t size = numbers.size() * shortest;
  if (hasFixedWidth()) {
    return size;
  }
  int digits = m_kind == PieceKind::decimal ? m_width + 1 : 1;
  for (; digits < kMaxDecimalDigits && firstLonger(digits) <= largest; ++digits) {
    const auto first = static_cast<std::int64_t>(firstLonger(digits));
    std::int64_t longer = 0;
    for (const std::uint64_t number : numbers) {
      longer += static_cast<std::int64_t>(number) >= first;
    }
    size += static_cast<std::uint64_t>(longer);
  }
  return size;
}

}  // namespace kelvarin
