// Prints the texts of one template from the columns of its fields.
//
// Used by the decoder of shaped texts.
// Layout: docs/gel-format.md, "Shaped texts".
// Errors: operations return false where the bytes are damaged.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/piece_printer.h"
#include "columnar/codecs/shaped_texts.h"
#include "columnar/codecs/template_batch.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_template.h"

namespace kelvarin {

class TemplatePrinter {
 public:
  [[nodiscard]] bool takeTemplate(ByteReader& reader) { return m_template.take(reader); }
  // The columns of the fields, for `rows` texts.
  [[nodiscard]] bool takeColumns(ByteReader& reader, std::size_t rows);

  // Texts that repeat need not be printed again. Where the fields have few values each, the texts
  // can be read as combinations of these instead: all are below combinationCount(), which is 0
  // where there may be more than kMaxCombinations.
  static constexpr std::size_t kMaxCombinations = 1 << 15;
  std::size_t combinationCount() const { return m_combinationCount; }
  [[nodiscard]] bool takeCombinations(std::span<std::uint32_t> combinations);

  // Before texts are printed. Returns what printing may touch behind their memory, which it fills
  // up to a given end.
  std::size_t beginPrinting();
  // Either all texts are printed in their order, a batch after another: true where there is another
  // text, unless it is damaged.
  [[nodiscard]] bool hasNext() { return m_next < m_loaded || loadBatch(); }
  // Or the next ones are those of up to TemplateBatch::kMaxRows combinations.
  void setNext(std::span<const std::uint32_t> combinations);
  // Prints the next text to `out`. Returns its end, or nullptr where a text of a field does not
  // fit.
  unsigned char* printNext(unsigned char* out, const unsigned char* end) {
    return m_batch.print(m_next++, out, end);
  }

  // The numbers of all texts can be taken at once instead, as so many bytes.
  std::size_t sizeOfNumbers(std::size_t rows) const;
  // Takes the values of all pieces and adds what the texts take to `size`.
  [[nodiscard]] bool takeValues(std::size_t rows, std::vector<PieceValues>& pieces,
                                std::uint64_t& size);

 private:
  // The texts of a field; a single one where all are the same.
  struct TextColumn {
    DecodedTexts texts;
    std::size_t next = 0;
    std::size_t step = 1;
    // The different texts, where they are found out: their offsets, and the index of each offset's.
    std::vector<std::uint32_t> values;
    std::vector<std::uint16_t> indices;
    std::vector<std::uint32_t> chosen;  // offsets of the combinations in the batch

    void findValues();
    [[nodiscard]] bool addIndices(std::size_t factor, std::span<std::uint32_t> combinations);
  };
  // A piece, and where the values of a field come from.
  struct Step {
    PiecePrinter printer;
    IntegerColumn* numbers = nullptr;
    TextColumn* texts = nullptr;

    bool isField() const { return printer.kind() != PieceKind::fixed; }
    // The texts differ in these numbers.
    bool hasNumbers() const { return numbers != nullptr && !numbers->isConstant(); }
  };

  static bool takeNumbers(Step& step, std::size_t rows, PieceValues& piece, std::uint64_t& size);
  static bool takeTexts(Step& step, std::size_t rows, PieceValues& piece, std::uint64_t& size);
  void countCombinations();
  static std::uint64_t valueCount(const Step& step);
  static bool addIndices(Step& step, std::size_t factor, std::span<std::uint32_t> combinations);
  void addToBatch(const Step& step);
  [[nodiscard]] bool loadBatch();
  [[nodiscard]] bool takeField(ByteReader& reader, const TemplatePiece& piece, std::size_t rows,
                               Step& step);

  TextTemplate m_template;
  std::vector<Step> m_steps;
  std::deque<IntegerColumn> m_numbers;
  std::deque<TextColumn> m_texts;
  std::size_t m_combinationCount = 0;
  TemplateBatch m_batch;
  std::size_t m_remaining = 0;  // texts behind those of the batch
  std::size_t m_next = 0;       // in the batch
  std::size_t m_loaded = 0;
};

}  // namespace kelvarin
