// Cuts texts into the fields of a template, which printed again give the same bytes.
//
// Many texts are parsed together, piece after piece: no text waits for another one, so that the
// processor works on several at a time, and what is decided by the kind of a piece is decided once.
// Used by ShapedTextEncoder for each batch of texts, so nothing is allocated for a text.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "columnar/codecs/text_template.h"

namespace kelvarin {

// Contiguous texts.
struct TextBatch {
  static constexpr std::size_t kMaxTexts = 256;

  const unsigned char* bytes = nullptr;
  const unsigned char* endOfMemory = nullptr;                // bytes up to here may be read
  std::array<const unsigned char*, kMaxTexts + 1> begins{};  // and the end of the last text
};

// The texts of a batch that follow a template, and the values of their fields.
class ParsedTexts {
 public:
  // In ascending order.
  std::span<const std::uint16_t> rows() const { return {m_rows.data(), m_rowCount}; }
  std::uint64_t number(std::size_t field, std::size_t row) const {
    return m_values[field * TextBatch::kMaxTexts + row];
  }
  Bytes text(const TextBatch& batch, std::size_t field, std::size_t row) const {
    const std::uint64_t offsetAndSize = number(field, row);
    return {batch.bytes + (offsetAndSize & kOffsetMask), offsetAndSize >> kSizeShift};
  }

 private:
  friend class TemplateParser;
  // The offset and the size of a text field in the batch's bytes, in one number.
  static constexpr int kSizeShift = 32;
  static constexpr std::uint64_t kOffsetMask = 0xFFFFFFFF;

  std::array<std::uint16_t, TextBatch::kMaxTexts> m_rows{};  // that have fitted so far
  std::size_t m_rowCount = 0;
  std::array<const unsigned char*, TextBatch::kMaxTexts> m_next{};  // what is left of each text
  std::vector<std::uint64_t> m_values;                              // field after field
};

class TemplateParser {
 public:
  // The template's bytes outlive the parser.
  explicit TemplateParser(const TextTemplate& shape);

  std::size_t fieldCount() const { return m_fieldCount; }
  // Parses those of the texts that `rows` has, in ascending order.
  void parse(const TextBatch& batch, std::span<const std::uint16_t> rows,
             ParsedTexts& parsed) const;

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
    MomentPattern moment;
  };

  static void takePiece(const Step& step, const TextBatch& batch, ParsedTexts& parsed,
                        std::uint64_t* values);

  std::vector<Step> m_steps;
  std::size_t m_fieldCount = 0;
};

// Whether a text field of letters goes on with the character.
constexpr bool isLetter(unsigned char character) {
  return static_cast<unsigned char>((character | 0x20) - 'a') < 26 || character >= 0x80;
}

}  // namespace kelvarin
