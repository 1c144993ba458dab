#include "columnar/codecs/shaped_text_encoder.h"

#include <algorithm>
#include <bit>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/shape_inference.h"
#include "columnar/codecs/text_encoder.h"

namespace kelvarin {

ShapedTextEncoder::ShapedTextEncoder() = default;
ShapedTextEncoder::~ShapedTextEncoder() = default;

// The index of the template that the text follows, or the number of texts of no shape.
std::size_t ShapedTextEncoder::parse(Bytes text, const unsigned char* endOfMemory) {
  std::uint32_t candidates =
      text.empty() ? (1u << m_parsers.size()) - 1 : m_candidates[text.front()];
  for (; candidates != 0; candidates &= candidates - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(candidates));
    if (m_parsers[i].parse(text, endOfMemory, m_values)) {
      return i;
    }
  }
  return otherNumber();
}

void ShapedTextEncoder::addFields(Columns& columns) {
  ++columns.rows;
  for (std::size_t field = 0; field < columns.areTexts.size(); ++field) {
    if (columns.areTexts[field]) {
      const Bytes text = m_values[field].text;
      columns.texts[field].add(text.data(), static_cast<std::uint32_t>(text.size()));
    } else {
      columns.numbers[field].push_back(m_values[field].number);
    }
  }
}

void ShapedTextEncoder::findCandidates(std::span<const TextTemplate> templates) {
  m_candidates.fill(0);
  for (std::size_t i = 0; i < templates.size(); ++i) {
    const auto& pieces = templates[i].pieces;
    if (!pieces.empty() && pieces[0].kind == PieceKind::fixed && !pieces[0].bytes.empty()) {
      m_candidates[static_cast<unsigned char>(pieces[0].bytes[0])] |= 1u << i;
      continue;
    }
    for (std::uint32_t& candidates : m_candidates) {
      candidates |= 1u << i;
    }
  }
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
  findCandidates(templates);
  m_others.clear();
}

// False as soon as too many texts follow no template.
bool ShapedTextEncoder::parseAll(const TextValues& texts, std::span<const TextTemplate> templates,
                                 std::size_t maxOthers) {
  constexpr std::size_t kTrialRows = 512;
  beginColumns(templates);
  m_numbers.resize(texts.lengths.size());
  const unsigned char* bytes = texts.bytes.data();
  const unsigned char* end = bytes + texts.bytes.size();
  for (std::size_t row = 0; row < texts.lengths.size(); ++row) {
    const std::uint32_t length = texts.lengths[row];
    if (length == kNullLength) {
      m_numbers[row] = nullNumber();
      continue;
    }
    const std::size_t number = parse({bytes, length}, end);
    m_numbers[row] = number;
    if (number < templates.size()) {
      addFields(m_columns[number]);
    } else {
      m_others.add(bytes, length);
      const bool areManySoFar = m_others.size() > kTrialRows / 2 && m_others.size() * 2 > row;
      if (areManySoFar || m_others.size() > maxOthers) {
        return false;
      }
    }
    bytes += length;
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
      m_integers.append(columns.numbers[field], out);
    }
    field += piece.isField();
  }
}

bool ShapedTextEncoder::append(const TextValues& texts, std::span<const Bytes> sample,
                               TextHistory& history, ByteBuffer& out) {
  history.templates = sample.size() < 2 ? std::vector<TextTemplate>() : inferTemplates(sample);
  history.fields.clear();
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
