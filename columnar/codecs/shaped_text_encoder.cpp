#include "columnar/codecs/shaped_text_encoder.h"

#include <algorithm>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/shape_inference.h"
#include "columnar/codecs/text_encoder.h"

namespace kelvarin {

ShapedTextEncoder::ShapedTextEncoder() = default;
ShapedTextEncoder::~ShapedTextEncoder() = default;

// Of each row that is not null the template is to be found.
void ShapedTextEncoder::beginBatch(std::span<const std::uint32_t> lengths,
                                   const unsigned char* bytes, std::uint64_t* numbers) {
  m_batch.bytes = bytes;
  m_left.resize(lengths.size());
  std::size_t left = 0;
  for (std::size_t row = 0; row < lengths.size(); ++row) {
    m_batch.begins[row] = bytes;
    const bool isNull = lengths[row] == kNullLength;
    numbers[row] = isNull ? nullNumber() : otherNumber();
    m_left[left] = static_cast<std::uint16_t>(row);
    left += isNull ? 0 : 1;
    bytes += byteCountOf(lengths[row]);
  }
  m_left.resize(left);
  m_batch.begins[lengths.size()] = bytes;
}

// The first template that a text follows is its own.
void ShapedTextEncoder::parseBatch(std::uint64_t* numbers) {
  for (std::size_t i = 0; i < m_parsers.size() && !m_left.empty(); ++i) {
    m_parsers[i].parse(m_batch, m_left, m_parsed);
    if (m_parsed.rows().empty()) {
      continue;
    }
    addFields(m_columns[i]);
    for (const std::uint16_t row : m_parsed.rows()) {
      numbers[row] = i;
    }
    if (m_parsed.rows().size() == m_left.size()) {
      return m_left.clear();
    }
    std::erase_if(m_left, [&](std::uint16_t row) { return numbers[row] == i; });
  }
  for (const std::uint16_t row : m_left) {
    m_others.add(m_batch.begins[row],
                 static_cast<std::uint32_t>(m_batch.begins[row + 1u] - m_batch.begins[row]));
  }
}

void ShapedTextEncoder::addFields(Columns& columns) const {
  const auto rows = m_parsed.rows();
  for (std::size_t field = 0; field < columns.areTexts.size(); ++field) {
    if (columns.areTexts[field]) {
      columns.texts[field].addWords(
          rows, [&](std::uint16_t row) { return m_parsed.text(m_batch, field, row); },
          m_batch.endOfMemory);
      continue;
    }
    std::vector<std::uint64_t>& numbers = columns.numbers[field];
    numbers.resize(columns.rows + rows.size());
    std::transform(rows.begin(), rows.end(), numbers.data() + columns.rows,
                   [&](std::uint16_t row) { return m_parsed.number(field, row); });
  }
  columns.rows += rows.size();
}

void ShapedTextEncoder::beginColumns(std::span<const TextTemplate> templates) {
  m_parsers.clear();
  for (std::size_t i = 0; i < templates.size(); ++i) {
    const std::size_t fields = m_parsers.emplace_back(templates[i]).fieldCount();
    m_columns[i].rows = 0;
    m_columns[i].numbers.resize(std::max(fields, m_columns[i].numbers.size()));
    m_columns[i].texts.resize(std::max(fields, m_columns[i].texts.size()));
    for (std::size_t field = 0; field < fields; ++field) {
      m_columns[i].numbers[field].clear();
      m_columns[i].texts[field].clear();
    }
    m_columns[i].areTexts.clear();
    for (const TemplatePiece& piece : templates[i].pieces) {
      if (piece.isField()) {
        m_columns[i].areTexts.push_back(piece.kind == PieceKind::text);
      }
    }
  }
  m_others.clear();
}

// False as soon as too many texts follow no template.
bool ShapedTextEncoder::parseAll(const TextValues& texts, std::span<const TextTemplate> templates,
                                 std::size_t maxOthers) {
  constexpr std::size_t kTrialRows = 512;
  beginColumns(templates);
  const std::size_t rows = texts.lengths.size();
  m_numbers.resize(rows);
  m_batch.endOfMemory = texts.bytes.data() + texts.bytes.size();
  const unsigned char* bytes = texts.bytes.data();
  for (std::size_t first = 0; first < rows; first += TextBatch::kMaxTexts) {
    const auto lengths = texts.lengths.subspan(first, std::min(TextBatch::kMaxTexts, rows - first));
    beginBatch(lengths, bytes, m_numbers.data() + first);
    parseBatch(m_numbers.data() + first);
    const std::size_t others = m_others.size();
    const bool areManySoFar = others > kTrialRows / 2 && others * 2 > first + lengths.size();
    if (areManySoFar || others > maxOthers) {
      return false;
    }
    bytes = m_batch.begins[lengths.size()];
  }
  return true;
}

// Templates that no text follows are not stored, and those behind them move up.
void ShapedTextEncoder::numberUsed() {
  std::vector<std::uint64_t> newNumbers(m_parsers.size());
  m_used.clear();
  for (std::size_t i = 0; i < m_parsers.size(); ++i) {
    newNumbers[i] = m_used.size();
    if (m_columns[i].rows > 0) {
      m_used.push_back(i);
    }
  }
  if (m_used.size() == m_parsers.size()) {
    return;
  }
  newNumbers.push_back(m_used.size());      // the null text
  newNumbers.push_back(m_used.size() + 1);  // others
  for (std::uint64_t& number : m_numbers) {
    number = newNumbers[number];
  }
}

void ShapedTextEncoder::appendColumns(const TextTemplate& shape, const Columns& columns,
                                      std::span<TextHistory> histories, ByteBuffer& out) {
  std::size_t field = 0;
  for (const TemplatePiece& piece : shape.pieces) {
    if (piece.kind == PieceKind::text) {
      m_nested->appendNested(columns.texts[field].values(), TextLevel::field, histories[field],
                             out);
    } else if (piece.isField()) {
      m_integers.append(columns.numbers[field], histories[field].integers, out);
    }
    field += piece.isField();
  }
}

bool ShapedTextEncoder::append(const TextValues& texts, std::span<const Bytes> sample,
                               TextHistory& history, ByteBuffer& out) {
  auto templates = sample.size() < 2 ? std::vector<TextTemplate>() : inferTemplates(sample);
  if (templates != history.templates) {
    history.templates = std::move(templates);
    history.fields.clear();
  }
  const std::size_t rows = texts.lengths.size();
  if (history.templates.empty() || !parseAll(texts, history.templates, (rows - 1) / 2)) {
    return false;
  }
  history.maxOthers = static_cast<double>(m_others.size()) / static_cast<double>(rows);
  return appendParsed(texts, history, out);
}

bool ShapedTextEncoder::appendAsBefore(const TextValues& texts, TextHistory& history,
                                       ByteBuffer& out) {
  constexpr double kFewMore = 0.01;
  const auto rows = static_cast<double>(texts.lengths.size());
  const auto maxOthers = static_cast<std::size_t>((history.maxOthers + kFewMore) * rows);
  return parseAll(texts, history.templates, maxOthers) && appendParsed(texts, history, out);
}

bool ShapedTextEncoder::appendParsed(const TextValues& texts, TextHistory& history,
                                     ByteBuffer& out) {
  numberUsed();
  if (m_used.empty()) {
    return false;
  }
  if (!m_nested) {
    m_nested = std::make_unique<TextEncoder>();
  }
  std::size_t fields = 0;
  for (const TemplateParser& parser : m_parsers) {
    fields += parser.fieldCount();
  }
  history.fields.resize(fields);
  const std::size_t begin = out.size();
  out.put(static_cast<std::uint32_t>(texts.lengths.size()));
  out.put(static_cast<std::uint32_t>(texts.bytes.size()));
  out.put(static_cast<std::uint8_t>(m_used.size()));
  for (const std::size_t used : m_used) {
    history.templates[used].append(out);
  }
  m_integers.append(m_numbers, out);
  std::size_t firstField = 0;
  for (std::size_t i = 0; i < m_parsers.size(); ++i) {
    if (m_columns[i].rows > 0) {
      appendColumns(history.templates[i], m_columns[i],
                    std::span(history.fields).subspan(firstField), out);
    }
    firstField += m_parsers[i].fieldCount();
  }
  if (m_others.size() > 0) {
    m_nested->appendNested(m_others.values(), TextLevel::field, TextHistory::of(history.others),
                           out);
  }
  if (texts.rawSize() > maxDecodedSize(out.size() - begin)) {
    out.resize(begin);
    return false;
  }
  return true;
}

}  // namespace kelvarin
