// What texts of one shape have in common: a sequence of fixed pieces and fields, such as the word
// "Customer ", a number, or a date.
//
// Each field is a column of numbers or of texts. Printing the values of the fields restores the
// texts to the last byte. Used by the encoding of shaped texts.
// Layout: docs/gel-format.md, "Shaped texts".
// Errors: a read returns false where the bytes are damaged.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/digit_printing.h"
#include "columnar/codecs/moment_pattern.h"

namespace kelvarin {

enum class PieceKind : std::uint8_t {
  fixed = 0,
  digits = 1,         // of a fixed width, with leading zeros
  number = 2,         // decimal, without leading zeros
  varyingDigits = 3,  // of several widths, some with leading zeros
  lowerHex = 4,       // of a fixed width
  upperHex = 5,
  decimal = 6,  // a number, a separator and a fraction of a fixed width
  moment = 7,
  text = 8,
};

// The characters that a text field takes from where it begins. They are not stored.
enum class TextExtent : std::uint8_t { letters, lettersAndDigits, rest };

struct TemplatePiece {
  PieceKind kind = PieceKind::fixed;
  int width = 0;      // in digits; of a decimal that of its fraction
  std::string bytes;  // of a fixed piece; the separator of a decimal; the pattern of a moment
  TextExtent extent = TextExtent::letters;

  bool isField() const { return kind != PieceKind::fixed; }
  bool isNumeric() const { return isField() && kind != PieceKind::text; }
  bool operator==(const TemplatePiece&) const = default;
};

struct TextTemplate {
  static constexpr std::size_t kMaxPieces = 96;
  static constexpr std::size_t kMaxFixedSize = 255;  // of one piece

  std::vector<TemplatePiece> pieces;

  void append(ByteBuffer& out) const;
  [[nodiscard]] bool take(ByteReader& reader);
  bool operator==(const TextTemplate&) const = default;
};

// How many digit sequences are shorter than `width`, which is 1 to 19.
constexpr std::uint64_t countOfShorterDigits(int width) {
  return (powerOfTen(width) - 10) / 9;
}

// The largest number of a numeric field.
std::uint64_t largestNumber(const TemplatePiece& piece);

}  // namespace kelvarin
