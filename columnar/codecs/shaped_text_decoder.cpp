#include "columnar/codecs/shaped_text_decoder.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <memory>
#include <optional>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/template_printer.h"
#include "columnar/codecs/text_entries.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

constexpr std::size_t kLengthSize = sizeof(std::uint32_t);

// A text that is stored, and its code as TextEntries has it.
struct StoredText {
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  std::uint32_t offset = 0;
  std::uint32_t code = kNone;
};

// Which texts of a template have been printed: dates repeat, and to print one takes longer than to
// find it.
class PrintedTexts {
 public:
  using FieldValues = TemplatePrinter::FieldValues;

  struct Text {
    FieldValues values{};
    StoredText stored;
  };

  PrintedTexts() : m_texts(kSlots) {}

  // Where the text of these fields is, or is to be noted.
  Text& at(const FieldValues& values) {
    const std::uint64_t mixed = values[0] + values[1] * 0x9E3779B97F4A7C15u;
    return m_texts[(mixed ^ mixed >> 32) % kSlots];
  }
  bool isThere(const Text& text, const FieldValues& values) {
    const bool isFound = text.values[0] == values[0] && text.values[1] == values[1] &&
                         text.stored.code != StoredText::kNone;
    m_found += isFound;
    m_printed += !isFound;
    return isFound;
  }
  // Most of the texts so far were there.
  bool isWorthwhile() const { return m_printed < kTrial || m_printed < m_found; }

 private:
  static constexpr std::size_t kSlots = 4096;  // days of eleven years
  static constexpr std::size_t kTrial = kSlots;

  std::vector<Text> m_texts;
  std::size_t m_found = 0;
  std::size_t m_printed = 0;
};

class ShapedTextDecoder {
 public:
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count);
  [[nodiscard]] bool decode(DecodedTexts& texts);

 private:
  [[nodiscard]] bool takeTemplates(ByteReader& reader);
  [[nodiscard]] bool takeTemplateNumbers(ByteReader& reader);
  [[nodiscard]] bool takeColumns(ByteReader& reader);
  unsigned char* copyOther(unsigned char* out);
  template <typename Print>
  [[nodiscard]] bool addText(Print print);
  [[nodiscard]] bool addNull();
  // These set where the text of the next row is. False where it is damaged.
  [[nodiscard]] bool addRow(std::size_t number, TextEntries& entries, StoredText& added);
  [[nodiscard]] bool addRepeating(std::size_t index, TextEntries& entries, StoredText& added);

  std::uint32_t offset() const { return static_cast<std::uint32_t>(m_out - m_begin); }

  // The numbers of the rows that have no template come after those of the templates.
  std::size_t nullNumber() const { return m_printers.size(); }
  std::size_t otherNumber() const { return m_printers.size() + 1; }

  std::size_t m_count = 0;
  std::size_t m_size = 0;  // of all texts
  std::deque<TemplatePrinter> m_printers;
  bool m_isOneTemplate = false;
  std::vector<std::uint8_t> m_numbers;  // of each row; a single one where all are equal
  std::vector<std::size_t> m_rows;      // that have each number
  DecodedTexts m_others;
  std::size_t m_nextOther = 0;

  // While texts are printed.
  std::vector<std::unique_ptr<PrintedTexts>> m_printed;  // of each number; null: not kept
  std::optional<StoredText> m_null;                      // which all nulls share
  const unsigned char* m_begin = nullptr;
  unsigned char* m_out = nullptr;
  const unsigned char* m_end = nullptr;
  std::size_t m_sizeOfRows = 0;  // with their lengths; texts that are shared count for each row
};

bool ShapedTextDecoder::takeTemplates(ByteReader& reader) {
  std::uint8_t count = 0;
  if (!reader.read(count) || count == 0 || count > kMaxTemplates) {
    return false;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (!m_printers.emplace_back().takeTemplate(reader)) {
      return false;
    }
  }
  return true;
}

bool ShapedTextDecoder::takeTemplateNumbers(ByteReader& reader) {
  IntegerColumn column;
  if (!column.take(reader, m_count, otherNumber())) {
    return false;
  }
  m_rows.assign(otherNumber() + 1, 0);
  m_isOneTemplate = column.isConstant();
  const std::size_t stored = m_isOneTemplate ? 1 : m_count;
  m_numbers.resize(stored);
  for (std::uint8_t& number : m_numbers) {
    if (!column.hasNext()) {
      return false;
    }
    number = static_cast<std::uint8_t>(column.number());
    ++m_rows[number];
  }
  if (m_isOneTemplate) {
    m_rows[m_numbers[0]] = m_count;
  }
  return true;
}

// Only templates with rows are stored.
bool ShapedTextDecoder::takeColumns(ByteReader& reader) {
  for (std::size_t i = 0; i < m_printers.size(); ++i) {
    if (m_rows[i] == 0 || !m_printers[i].takeColumns(reader, m_rows[i])) {
      return false;
    }
  }
  const std::size_t others = m_rows[otherNumber()];
  return others == 0 || readNestedTexts(reader, others, TextLevel::field, m_others);
}

bool ShapedTextDecoder::take(ByteReader& reader, std::size_t count) {
  std::uint32_t statedCount = 0;
  std::uint32_t size = 0;
  const std::size_t available = reader.remaining();
  m_count = count;
  if (!reader.read(statedCount) || statedCount != count || !reader.read(size) ||
      size + count * kLengthSize > maxDecodedSize(available)) {
    return false;
  }
  m_size = size;
  return takeTemplates(reader) && takeTemplateNumbers(reader) && takeColumns(reader) &&
         reader.remaining() == 0;
}

unsigned char* ShapedTextDecoder::copyOther(unsigned char* out) {
  const unsigned char* text = m_others.text(m_nextOther);
  const auto size = loadPacked<std::uint32_t>(text);
  m_nextOther += m_others.offsets.size() > 1;
  if (size > static_cast<std::size_t>(m_end - out)) {  // a null text is longer than all others
    return nullptr;
  }
  std::memcpy(out, text + kLengthSize, size);
  return out + size;
}

// Behind the texts so far. False where it is damaged.
template <typename Print>
bool ShapedTextDecoder::addText(Print print) {
  unsigned char* const text = m_out + kLengthSize;
  if (text > m_end) {
    return false;
  }
  unsigned char* const textEnd = print(text);
  if (textEnd == nullptr || textEnd > m_end) {
    return false;
  }
  storePacked(m_out, static_cast<std::uint32_t>(textEnd - text));
  m_sizeOfRows += static_cast<std::size_t>(textEnd - m_out);
  m_out = textEnd;
  return true;
}

bool ShapedTextDecoder::addNull() {
  if (m_end - m_out < static_cast<std::ptrdiff_t>(kLengthSize)) {
    return false;
  }
  storePacked(m_out, kNullLength);
  m_out += kLengthSize;
  return true;
}

bool ShapedTextDecoder::addRow(std::size_t number, TextEntries& entries, StoredText& added) {
  const std::uint32_t begin = offset();
  bool isAdded = false;
  if (number == nullNumber()) {
    m_sizeOfRows += kLengthSize;
    if (m_null) {
      added = *m_null;
      return true;
    }
    isAdded = addNull();
  } else if (number == otherNumber()) {
    isAdded = addText([this](unsigned char* out) { return copyOther(out); });
  } else {
    isAdded = addText(
        [this, number](unsigned char* out) { return m_printers[number].print(out, m_end); });
  }
  added.offset = begin;
  added.code = entries.add(begin);
  if (number == nullNumber()) {
    m_null = added;
  }
  return isAdded;
}

// The next text of a template with few fields, printed or found.
bool ShapedTextDecoder::addRepeating(std::size_t index, TextEntries& entries, StoredText& added) {
  TemplatePrinter& printer = m_printers[index];
  PrintedTexts& printed = *m_printed[index];
  PrintedTexts::FieldValues values;
  if (!printer.takeFields(values)) {
    return false;
  }
  PrintedTexts::Text& text = printed.at(values);
  if (printed.isThere(text, values)) {
    m_sizeOfRows += kLengthSize + loadPacked<std::uint32_t>(m_begin + text.stored.offset);
    added.offset = text.stored.offset;
    added.code = text.stored.code;
    return true;
  }
  const std::uint32_t begin = offset();
  if (!addText([&](unsigned char* out) { return printer.printFields(out, m_end); })) {
    return false;
  }
  added.offset = begin;
  added.code = entries.add(begin);
  text = {values, added};
  if (!printed.isWorthwhile()) {
    m_printed[index].reset();
    entries.drop();
  }
  return true;
}

bool ShapedTextDecoder::decode(DecodedTexts& texts) {
  constexpr std::size_t kRowsForPrinted = 256;
  std::size_t margin = 0;
  m_printed.resize(otherNumber() + 1);
  for (std::size_t i = 0; i < m_printers.size(); ++i) {
    margin = std::max(margin, m_printers[i].margin());
    if (m_printers[i].hasFewFields() && m_rows[i] >= kRowsForPrinted) {
      m_printed[i] = std::make_unique<PrintedTexts>();
    }
  }
  const std::size_t size = m_size + m_count * kLengthSize;
  texts.offsets.resize(m_count);
  texts.bytes.resize(size + margin);
  m_begin = m_out = texts.bytes.data();
  m_end = m_out + size;
  const auto mayRepeat = [](const auto& printed) { return printed != nullptr; };
  TextEntries entries(texts, m_count, std::ranges::any_of(m_printed, mayRepeat));
  for (std::size_t row = 0; row < m_count; ++row) {
    const std::size_t number = m_numbers[m_isOneTemplate ? 0 : row];
    StoredText text;
    const bool isAdded = m_printed[number] != nullptr ? addRepeating(number, entries, text)
                                                      : addRow(number, entries, text);
    if (!isAdded) {
      return false;
    }
    texts.offsets[row] = text.offset;
    entries.setRow(row, text.code);
  }
  texts.bytes.resize(offset());
  return m_sizeOfRows == size;
}

}  // namespace

bool decodeShapedTexts(ByteReader& reader, std::size_t count, DecodedTexts& texts) {
  ShapedTextDecoder decoder;
  return decoder.take(reader, count) && decoder.decode(texts);
}

}  // namespace kelvarin
