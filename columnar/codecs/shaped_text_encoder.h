// Stores texts that follow a few templates as the columns of their fields.
//
// Used by TextEncoder.
// Layout: docs/gel-format.md, "Shaped texts".
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/template_parser.h"
#include "columnar/codecs/text_history.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_list.h"

namespace kelvarin {

class TextEncoder;

class ShapedTextEncoder {
 public:
  ShapedTextEncoder();
  ~ShapedTextEncoder();

  // Appends the texts without an encoding byte. False, and nothing is appended, when too many of
  // them follow no template. Templates are inferred from the sample and go into the history.
  [[nodiscard]] bool append(const TextValues& texts, std::span<const Bytes> sample,
                            TextHistory& history, ByteBuffer& out);
  // The same with the templates of the history. False as well where more texts follow none of them
  // than in the block that they were inferred from.
  [[nodiscard]] bool appendAsBefore(const TextValues& texts, TextHistory& history, ByteBuffer& out);

 private:
  // The texts of one template, field by field; of each field only one member is used.
  struct Columns {
    std::vector<std::vector<std::uint64_t>> numbers;
    std::vector<TextList> texts;
    std::vector<std::uint8_t> areTexts;  // 1 for each field that is one
    std::size_t rows = 0;
  };

  [[nodiscard]] bool parseAll(const TextValues& texts, std::span<const TextTemplate> templates,
                              std::size_t maxOthers);
  void beginColumns(std::span<const TextTemplate> templates);
  void beginBatch(std::span<const std::uint32_t> lengths, const unsigned char* bytes,
                  std::uint64_t* numbers);
  void parseBatch(std::uint64_t* numbers);
  void addFields(Columns& columns) const;
  void numberUsed();
  [[nodiscard]] bool appendParsed(const TextValues& texts, TextHistory& history, ByteBuffer& out);
  void appendColumns(const TextTemplate& shape, const Columns& columns,
                     std::span<TextHistory> histories, ByteBuffer& out);
  std::uint64_t nullNumber() const { return m_parsers.size(); }
  std::uint64_t otherNumber() const { return m_parsers.size() + 1; }

  std::vector<TemplateParser> m_parsers;  // of the templates
  std::vector<std::size_t> m_used;        // the templates that some texts follow
  std::array<Columns, kMaxTemplates> m_columns;
  std::vector<std::uint64_t> m_numbers;  // of the templates, for each row
  TextList m_others;
  TextBatch m_batch;
  std::vector<std::uint16_t> m_left;  // rows of the batch whose template is not known
  ParsedTexts m_parsed;
  IntegerColumnEncoder m_integers;
  std::unique_ptr<TextEncoder> m_nested;
};

}  // namespace kelvarin
