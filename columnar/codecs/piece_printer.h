// Prints the pieces of a template that are no texts: fixed bytes, digits, and moments, one alone or
// those of many rows.
//
// Used wherever texts with a shape are made or compared.
// Threads: any, once the piece is set.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "columnar/codecs/digit_printing.h"
#include "columnar/codecs/text_template.h"

namespace kelvarin {

// The digits of the numbers below 1000, which are the most frequent, and how many these are.
struct SmallNumber {
  unsigned char digits[3];
  std::uint8_t count;
};

inline constexpr std::array<SmallNumber, 1000> kSmallNumbers = [] {
  std::array<SmallNumber, 1000> numbers{};
  for (unsigned i = 0; i < numbers.size(); ++i) {
    const int count = i < 10 ? 1 : i < 100 ? 2 : 3;
    unsigned rest = i;
    for (int digit = count; digit-- > 0; rest /= 10) {
      numbers[i].digits[digit] = static_cast<unsigned char>('0' + rest % 10);
    }
    numbers[i].count = static_cast<std::uint8_t>(count);
  }
  return numbers;
}();

// Where numbers of a field are printed: each with a distance from the one before, and what stands
// behind it. Nothing behind these bytes is touched.
struct PieceCells {
  using Word = std::array<unsigned char, 16>;

  unsigned char* out = nullptr;
  std::size_t step = 0;
  Word behind{};
  // Of fields of varying width: how many bytes before and behind a number belong to it, and what
  // each number takes with these.
  unsigned sizeAround = 0;
  std::uint8_t* sizes = nullptr;
  std::uint64_t largest = 0;  // no number is larger
};

class PiecePrinter {
 public:
  // How many bytes behind a piece printing may touch.
  static constexpr std::size_t kOverrun = 64;

  // False: the pattern of a moment is none.
  [[nodiscard]] bool set(const TemplatePiece& piece) {
    m_kind = piece.kind;
    m_width = piece.width;
    if (m_kind == PieceKind::fixed) {
      m_fixed = piece.bytes;
    } else if (m_kind == PieceKind::decimal) {
      m_separator = static_cast<unsigned char>(piece.bytes[0]);
    }
    return m_kind != PieceKind::moment || m_moment.compile(piece.bytes);
  }

  PieceKind kind() const { return m_kind; }
  const MomentPattern& moment() const { return m_moment; }

  // Of a fixed piece.
  std::size_t fixedSize() const { return m_fixed.size(); }
  std::string_view fixedBytes() const { return m_fixed; }

  // Of a field of numbers. Returns the end.
  unsigned char* printNumber(std::uint64_t number, unsigned char* out) const {
    switch (m_kind) {
      case PieceKind::digits:
        printDigits(number, m_width, out);
        return out + m_width;
      case PieceKind::number:
        return printShortest(number, out);
      case PieceKind::varyingDigits:
        return printVaryingDigits(number, out);
      case PieceKind::lowerHex:
        printHex(number, m_width, kLowerLetterOffset, out);
        return out + m_width;
      case PieceKind::upperHex:
        printHex(number, m_width, kUpperLetterOffset, out);
        return out + m_width;
      case PieceKind::decimal:
        return printDecimal(number, out);
      default:
        m_moment.print(number, out);
        return out + m_moment.size();
    }
  }

  // The numbers of the field are printed as equally many bytes.
  bool hasFixedWidth() const {
    return m_kind != PieceKind::number && m_kind != PieceKind::varyingDigits &&
           m_kind != PieceKind::decimal;
  }
  // No number takes more bytes.
  std::size_t longestNumber() const {
    return hasFixedWidth() ? sizeOf(0)
                           : kMaxDecimalDigits + std::size_t{m_kind == PieceKind::decimal};
  }

  // Prints the numbers of a field of fixed width.
  void printFixedWidth(std::span<const std::uint64_t> numbers, const PieceCells& cells) const;
  // The same for a field of varying width, with the sizes. Returns the most bytes that a number
  // takes by itself, or more.
  std::size_t printVaryingWidth(std::span<const std::uint64_t> numbers,
                                const PieceCells& cells) const;

  // How many bytes the numbers take together, none of which is above the largest one.
  std::uint64_t sizeOfAll(std::span<const std::uint64_t> numbers, std::uint64_t largest) const;
  // How many bytes the number takes.
  std::size_t sizeOf(std::uint64_t number) const {
    switch (m_kind) {
      case PieceKind::number:
        return static_cast<std::size_t>(digitCount(number));
      case PieceKind::varyingDigits:
        return static_cast<std::size_t>(widthOfVaryingDigits(number));
      case PieceKind::decimal:
        return static_cast<std::size_t>(digitsOfDecimal(number)) + 1;
      case PieceKind::moment:
        return m_moment.size();
      default:
        return static_cast<std::size_t>(m_width);
    }
  }

 private:
  static unsigned char* printShortest(std::uint64_t number, unsigned char* out) {
    if (number < kSmallNumbers.size()) {
      const SmallNumber& small = kSmallNumbers[number];
      std::memcpy(out, &small, sizeof small);
      return out + small.count;
    }
    const int width = digitCount(number);
    printDigits(number, width, out);
    return out + width;
  }

  static int widthOfVaryingDigits(std::uint64_t number) {
    const int width = digitCount(number);
    return width - (width > 1 && number < countOfShorterDigits(width));
  }
  static unsigned char* printVaryingDigits(std::uint64_t number, unsigned char* out) {
    const int width = widthOfVaryingDigits(number);
    printDigits(number - countOfShorterDigits(width), width, out);
    return out + width;
  }

  int digitsOfDecimal(std::uint64_t number) const {
    return std::max(digitCount(number), m_width + 1);
  }
  // Of up to eight digits.
  unsigned char* printShortDecimal(std::uint64_t number, int count, unsigned char* out) const {
    const std::uint64_t eight = eightDigits(static_cast<std::uint32_t>(number)) >> 8 * (8 - count);
    const int whole = count - m_width;
    storePacked(out, eight);
    out[whole] = m_separator;
    storePacked(out + whole + 1, eight >> 8 * whole);
    return out + count + 1;
  }
  // Prints all digits, and moves those of the fraction by the separator.
  unsigned char* printDecimal(std::uint64_t number, unsigned char* out) const {
    const int count = digitsOfDecimal(number);
    if (count <= 8) {
      return printShortDecimal(number, count, out);
    }
    printDigits(number, count, out);
    unsigned char* const fraction = out + count - m_width;
    unsigned char digits[kMaxDecimalDigits];
    std::memcpy(digits, fraction, sizeof digits);
    *fraction = m_separator;
    std::memcpy(fraction + 1, digits, sizeof digits);
    return out + count + 1;
  }

  PieceKind m_kind = PieceKind::fixed;
  int m_width = 0;
  unsigned char m_separator = 0;
  std::string m_fixed;
  MomentPattern m_moment;
};

// A number of a field as it is printed.
class PrintedNumber {
 public:
  std::string_view print(const PiecePrinter& printer, std::uint64_t number) {
    const unsigned char* end = printer.printNumber(number, m_bytes);
    return {reinterpret_cast<const char*>(m_bytes), static_cast<std::size_t>(end - m_bytes)};
  }

 private:
  unsigned char m_bytes[MomentPattern::kMaxSize + PiecePrinter::kOverrun];
};

}  // namespace kelvarin
