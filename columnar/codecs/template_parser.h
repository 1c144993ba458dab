// Cuts texts into the fields of a template, which printed again give the same bytes.
//
// Used by ShapedTextEncoder for each text, so nothing is allocated here.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "columnar/codecs/text_template.h"

namespace kelvarin {

// The fields of one text in the order of the template's pieces; of each only one member counts.
struct FieldValue {
  std::uint64_t number = 0;
  Bytes text;
};

using FieldValues = std::array<FieldValue, TextTemplate::kMaxPieces>;

class TemplateParser {
 public:
  // The template's bytes outlive the parser.
  explicit TemplateParser(const TextTemplate& shape);

  std::size_t fieldCount() const { return m_fieldCount; }
  // False when the text is of another shape, and then the values are unspecified. Memory behind the
  // text, up to `endOfMemory`, is read as well.
  [[nodiscard]] bool parse(Bytes text, const unsigned char* endOfMemory, FieldValues& values) const;

 private:
  // A piece, with what is needed for every text close together.
  struct Step {
    PieceKind kind = PieceKind::fixed;
    TextExtent extent = TextExtent::letters;
    unsigned char separator = 0;
    int width = 0;
    std::uint64_t beginning = 0;  // of a fixed piece: its first bytes
    std::uint64_t mask = 0;       // the bits that count of these
    std::string_view fixed;
  };

  std::vector<Step> m_steps;
  std::vector<MomentPattern> m_moments;  // of the pieces that are moments
  std::size_t m_fieldCount = 0;
};

// Whether a text field of letters goes on with the character.
constexpr bool isLetter(unsigned char character) {
  return static_cast<unsigned char>((character | 0x20) - 'a') < 26 || character >= 0x80;
}

}  // namespace kelvarin
