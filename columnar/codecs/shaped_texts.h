// Texts with a shape that are kept as their fields: numbers of days, bits of identifiers, words.
//
// They are checked when they are read, so that the texts of any rows can be made later, or compared
// with a text without being made. Made by the decoder of shaped texts.
// Threads: read-only once they are made.
// Errors: reading returns false where the bytes are damaged.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "columnar/codecs/piece_printer.h"
#include "columnar/codecs/template_batch.h"
#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

// A piece of a template with its values, one for each text of the template.
struct PieceValues {
  PiecePrinter printer;
  // Of a field of numbers; a single one where all are the same.
  std::unique_ptr<std::uint64_t[]> numbers;
  DecodedTexts texts;         // of a field of texts
  std::size_t step = 0;       // from the value of a text to that of the next one
  std::uint64_t largest = 0;  // number that the field may have

  bool isFixed() const { return printer.kind() == PieceKind::fixed; }
  bool hasTexts() const { return printer.kind() == PieceKind::text; }
  std::uint64_t number(std::size_t index) const { return numbers[index * step]; }
  const unsigned char* text(std::size_t index) const { return texts.text(index * step); }

  std::size_t sizeOf(std::size_t index) const;
};

class ShapedTexts {
 public:
  // Behind the memory of the texts that are made there are so many bytes more.
  static constexpr std::size_t kMargin = TemplateBatch::kOverrun;

  // Some rows of all texts.
  struct Rows {
    std::size_t first = 0;
    const std::uint32_t* selection = nullptr;  // counted from the first one; null: all rows
    std::size_t count = 0;

    std::size_t offset(std::size_t i) const { return selection == nullptr ? i : selection[i]; }
  };

  // Rows that have the number of no template are null or among the others, in this order.
  ShapedTexts(std::vector<std::vector<PieceValues>> templates, std::vector<std::uint8_t> numbers,
              DecodedTexts others);

  // About as much memory as they take.
  std::size_t byteCount() const { return m_byteCount; }
  // What these texts take when they are made, each with its length.
  std::uint64_t sizeOf(const Rows& rows) const;
  // Positions are counted from `bytes`, and stored at the offsets of the rows.
  void make(const Rows& rows, unsigned char* bytes, std::uint32_t* positions) const;

  // Compares the bytes of each row's text with others: below 0 where it stands before, above 0
  // where it stands behind. Null texts get what stands for them. `isEqualityOnly`: below may stand
  // for above, and above for below.
  void compare(std::string_view bytes, bool isEqualityOnly, std::int8_t ofNull, const Rows& rows,
               std::int8_t* orders) const;

 private:
  std::size_t nullNumber() const { return m_templates.size(); }
  std::size_t numberOf(std::size_t row) const { return m_numbers[m_indices.empty() ? 0 : row]; }
  std::size_t indexOf(std::size_t row) const { return m_indices.empty() ? row : m_indices[row]; }
  // The text of a row that follows no template.
  const unsigned char* otherOf(std::size_t row) const {
    return m_others.text(m_others.offsets.size() == 1 ? 0 : indexOf(row));
  }
  template <typename Use>
  void forEachBatch(const Rows& rows, Use use) const;

  const std::vector<std::vector<PieceValues>> m_templates;
  const std::vector<std::uint8_t> m_numbers;  // of each row's template; a single one where it is
  std::vector<std::uint32_t> m_indices;       // the same; of each row among those of its number
  const DecodedTexts m_others;
  std::uint64_t m_sizeOfEach = 0;  // of the texts, where all take equally many bytes; else 0
  std::size_t m_byteCount = 0;
};

}  // namespace kelvarin
