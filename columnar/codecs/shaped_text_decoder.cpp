#include "columnar/codecs/shaped_text_decoder.h"

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/shaped_texts.h"
#include "columnar/codecs/template_printer.h"
#include "columnar/codecs/text_entries.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

// A text that is stored.
struct PrintedText {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;  // with its length; 0 where it is not printed
  std::uint32_t code = 0;  // as TextEntries has it
};

// The texts of a template whose fields have few values: each is printed once and found for each of
// its rows, since that takes a fraction of the time.
struct RepeatingTexts {
  std::vector<std::uint32_t> combinations;  // of the rows that have the template
  std::size_t next = 0;
  std::vector<PrintedText> printed;  // by combination
};

class ShapedTextDecoder {
 public:
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count);
  [[nodiscard]] bool decode(DecodedTexts& texts);
  // Keeping the fields instead takes more time where texts repeat, and no more memory than some.
  bool canKeepFields() const;
  [[nodiscard]] bool keepFields(DecodedTexts& texts);

 private:
  [[nodiscard]] bool takeTemplates(ByteReader& reader);
  [[nodiscard]] bool takeTemplateNumbers(ByteReader& reader);
  [[nodiscard]] bool takeColumns(ByteReader& reader);
  unsigned char* copyOther(unsigned char* out);
  template <typename Print>
  [[nodiscard]] bool addText(Print print);
  bool doesRepeat(std::size_t index) const;
  [[nodiscard]] bool printRepeating(std::size_t index, TextEntries& entries);
  [[nodiscard]] bool printNew(TemplatePrinter& printer, std::span<const std::uint32_t> combinations,
                              TextEntries& entries, std::vector<PrintedText>& printed);
  // The rows from one on that have the same number.
  struct Run {
    std::size_t firstRow;
    std::span<std::uint32_t> offsets;
  };
  Run runFrom(std::size_t row, std::span<std::uint32_t> offsets) const;
  // These store the texts of a run, or find them. False where they are damaged.
  [[nodiscard]] bool addRun(std::size_t number, const Run& run, TextEntries& entries);
  [[nodiscard]] bool addNulls(const Run& run, TextEntries& entries);
  void findRepeating(RepeatingTexts& repeating, const Run& run, TextEntries& entries);
  template <typename Add>
  [[nodiscard]] bool addEach(const Run& run, TextEntries& entries, Add add);

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
  std::vector<std::optional<RepeatingTexts>> m_repeating;  // of each template
  PrintedText m_null;                                      // which all nulls share
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
  for (std::size_t row = 0; row < stored;) {
    const auto numbers = column.nextNumbers();
    if (numbers.empty()) {
      return false;
    }
    for (const std::uint64_t number : numbers.first(std::min(numbers.size(), stored - row))) {
      m_numbers[row++] = static_cast<std::uint8_t>(number);
      ++m_rows[number];
    }
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
  m_out = textEnd;
  return true;
}

bool ShapedTextDecoder::addNulls(const Run& run, TextEntries& entries) {
  if (m_null.size == 0) {
    if (m_end - m_out < static_cast<std::ptrdiff_t>(kLengthSize)) {
      return false;
    }
    m_null = {offset(), kLengthSize, entries.add(offset())};
    storePacked(m_out, kNullLength);
    m_out += kLengthSize;
  }
  for (std::size_t i = 0; i < run.offsets.size(); ++i) {
    run.offsets[i] = m_null.offset;
    entries.setRow(run.firstRow + i, m_null.code);
  }
  m_sizeOfRows += run.offsets.size() * kLengthSize;
  return true;
}

// Not worthwhile where most occur once.
bool ShapedTextDecoder::doesRepeat(std::size_t index) const {
  const std::size_t combinations = m_printers[index].combinationCount();
  return combinations != 0 && combinations <= 4 * m_rows[index];
}

bool ShapedTextDecoder::printRepeating(std::size_t index, TextEntries& entries) {
  TemplatePrinter& printer = m_printers[index];
  RepeatingTexts& repeating = *m_repeating[index];
  repeating.combinations.resize(m_rows[index]);
  repeating.printed.resize(printer.combinationCount());
  if (!printer.takeCombinations(repeating.combinations)) {
    return false;
  }
  constexpr std::uint32_t kIsNext = 1;  // a size that no text has
  std::array<std::uint32_t, TemplateBatch::kMaxRows> batch;
  std::size_t count = 0;
  for (const std::uint32_t combination : repeating.combinations) {
    if (std::uint32_t& size = repeating.printed[combination].size; size == 0) {
      size = kIsNext;
      batch[count++] = combination;
    }
    if (count == batch.size()) {
      if (!printNew(printer, batch, entries, repeating.printed)) {
        return false;
      }
      count = 0;
    }
  }
  return printNew(printer, std::span(batch).first(count), entries, repeating.printed);
}

bool ShapedTextDecoder::printNew(TemplatePrinter& printer,
                                 std::span<const std::uint32_t> combinations, TextEntries& entries,
                                 std::vector<PrintedText>& printed) {
  printer.setNext(combinations);
  for (const std::uint32_t combination : combinations) {
    const std::uint32_t begin = offset();
    if (!addText([&](unsigned char* out) { return printer.printNext(out, m_end); })) {
      return false;
    }
    printed[combination] = {begin, offset() - begin, entries.add(begin)};
  }
  return true;
}

ShapedTextDecoder::Run ShapedTextDecoder::runFrom(std::size_t row,
                                                  std::span<std::uint32_t> offsets) const {
  if (m_isOneTemplate) {
    return {row, offsets};
  }
  std::size_t end = row + 1;
  while (end < m_count && m_numbers[end] == m_numbers[row]) {
    ++end;
  }
  return {row, offsets.subspan(row, end - row)};
}

void ShapedTextDecoder::findRepeating(RepeatingTexts& repeating, const Run& run,
                                      TextEntries& entries) {
  const std::uint32_t* combinations = repeating.combinations.data() + repeating.next;
  repeating.next += run.offsets.size();
  std::size_t size = 0;
  for (std::size_t i = 0; i < run.offsets.size(); ++i) {
    const PrintedText& text = repeating.printed[combinations[i]];
    run.offsets[i] = text.offset;
    entries.setRow(run.firstRow + i, text.code);
    size += text.size;
  }
  m_sizeOfRows += size;
}

// Each row has a text of its own, which add() stores.
template <typename Add>
bool ShapedTextDecoder::addEach(const Run& run, TextEntries& entries, Add add) {
  const std::uint32_t begin = offset();
  for (std::size_t i = 0; i < run.offsets.size(); ++i) {
    run.offsets[i] = offset();
    if (!add()) {
      return false;
    }
    entries.setRow(run.firstRow + i, entries.add(run.offsets[i]));
  }
  m_sizeOfRows += offset() - begin;
  return true;
}

bool ShapedTextDecoder::addRun(std::size_t number, const Run& run, TextEntries& entries) {
  if (number == nullNumber()) {
    return addNulls(run, entries);
  }
  if (number == otherNumber()) {
    return addEach(run, entries, [this] {
      return addText([this](unsigned char* out) { return copyOther(out); });
    });
  }
  if (m_repeating[number]) {
    findRepeating(*m_repeating[number], run, entries);
    return true;
  }
  TemplatePrinter& printer = m_printers[number];
  return addEach(run, entries, [this, &printer] {
    return printer.hasNext() &&
           addText([&](unsigned char* out) { return printer.printNext(out, m_end); });
  });
}

bool ShapedTextDecoder::decode(DecodedTexts& texts) {
  m_repeating.resize(m_printers.size());
  std::size_t margin = kTextMargin;
  bool anyRepeats = false;
  for (std::size_t i = 0; i < m_printers.size(); ++i) {
    margin = std::max(margin, m_printers[i].beginPrinting());
    if (doesRepeat(i)) {
      m_repeating[i].emplace();
      anyRepeats = true;
    }
  }
  const std::size_t size = m_size + m_count * kLengthSize;
  texts.offsets.resize(m_count);
  texts.bytes.resize(size + margin);
  m_out = texts.bytes.data();
  m_begin = m_out;
  m_end = m_begin + size;
  TextEntries entries(texts, m_count, anyRepeats);
  for (std::size_t i = 0; i < m_printers.size(); ++i) {
    if (m_repeating[i] && !printRepeating(i, entries)) {
      return false;
    }
  }
  for (std::size_t row = 0; row < m_count;) {
    const Run run = runFrom(row, texts.offsets);
    if (!addRun(m_numbers[m_isOneTemplate ? 0 : row], run, entries)) {
      return false;
    }
    row += run.offsets.size();
  }
  texts.bytes.resize(offset());
  return m_sizeOfRows == size;
}

bool ShapedTextDecoder::canKeepFields() const {
  std::uint64_t size = 0;
  for (std::size_t i = 0; i < m_printers.size(); ++i) {
    if (doesRepeat(i)) {
      return false;
    }
    size += m_printers[i].sizeOfNumbers(m_rows[i]);
  }
  return size <= 2 * (m_size + m_count * kLengthSize);
}

bool ShapedTextDecoder::keepFields(DecodedTexts& texts) {
  std::uint64_t size = m_count * kLengthSize;
  std::vector<std::vector<PieceValues>> templates(m_printers.size());
  for (std::size_t i = 0; i < templates.size(); ++i) {
    if (!m_printers[i].takeValues(m_rows[i], templates[i], size)) {
      return false;
    }
  }
  const std::size_t others = m_rows[otherNumber()];
  const std::size_t times = m_others.offsets.size() == 1 ? others : 1;
  for (const std::uint32_t offset : m_others.offsets) {
    const auto length = loadPacked<std::uint32_t>(m_others.bytes.data() + offset);
    if (length == kNullLength) {
      return false;
    }
    size += times * length;
  }
  texts.shaped = std::make_shared<const ShapedTexts>(std::move(templates), std::move(m_numbers),
                                                     std::move(m_others));
  return size == m_size + m_count * kLengthSize;
}

}  // namespace

bool decodeShapedTexts(ByteReader& reader, std::size_t count, TextForm form, DecodedTexts& texts) {
  ShapedTextDecoder decoder;
  if (!decoder.take(reader, count)) {
    return false;
  }
  return form == TextForm::late && decoder.canKeepFields() ? decoder.keepFields(texts)
                                                           : decoder.decode(texts);
}

}  // namespace kelvarin
