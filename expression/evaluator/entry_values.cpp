#include "expression/evaluator/entry_values.h"

#include <algorithm>

#include "expression/backends/string_values.h"

namespace kelvarin {

namespace {

// Of the texts that a part makes; beyond, rows are cheaper to keep.
constexpr std::size_t kMaxTextBytes = std::size_t{1} << 20;

}  // namespace

// A text of the String Parser's null bytes is null there.
ColumnText columnText(const unsigned char* bytes) {
  const std::string_view text = textFromBytes(bytes);
  return isNullText(bytes) || text == kNullTextBytes ? ColumnText() : ColumnText(text);
}

EntryValues::EntryValues(const EntryProgram& program, std::size_t variable,
                         const BatchColumn& column, const FunctionContext& functions,
                         const RunRecord* run)
    : m_parts(program.parts().size()) {
  ColumnEvaluation evaluation(functions);
  m_areKnown = true;
  for (std::size_t i = 0; i < m_parts.size() && m_areKnown; ++i) {
    const EntryProgram::Part& part = program.parts()[i];
    m_areKnown = part.variable != variable || compute(part, column, evaluation, run, m_parts[i]);
  }
}

bool EntryValues::compute(const EntryProgram::Part& part, const BatchColumn& column,
                          ColumnEvaluation& evaluation, const RunRecord* run, PartValues& values) {
  const std::span<const std::uint32_t> entries = column.dictionary().positions;
  const bool isText = part.program->yieldsText();
  if (isText) {
    values.texts = std::make_unique_for_overwrite<ColumnText[]>(entries.size());
  } else {
    values.numbers = std::make_unique_for_overwrite<double[]>(entries.size());
  }
  std::array<ColumnText, ColumnProgram::kMaxRows> loaded;
  std::vector<const ColumnText*> variables(part.variable + 1);
  variables[part.variable] = loaded.data();
  for (std::size_t first = 0; first < entries.size(); first += loaded.size()) {
    if (run != nullptr && run->isStoppedByUser()) {
      return false;
    }
    const std::size_t count = std::min(loaded.size(), entries.size() - first);
    for (std::size_t i = 0; i < count; ++i) {
      loaded[i] = columnText(column.textBytes() + entries[first + i]);
    }
    if (evaluation.evaluate(*part.program, {nullptr, variables.data()}, count) < count) {
      return false;
    }
    if (!isText) {
      std::copy_n(evaluation.numbers(), count, values.numbers.get() + first);
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      const ColumnText& text = evaluation.texts()[i];
      values.texts[first + i] = text.isNull() ? text : ColumnText(m_texts.copy(text.view()));
    }
    if (m_texts.usedBytes() > kMaxTextBytes) {
      return false;
    }
  }
  return true;
}

bool convertText(const NumberSource& source, const unsigned char* bytes, const DateContext& dates,
                 TextColumn& texts, double& number) {
  const std::string_view text = textFromBytes(bytes);
  number = source.origin == NumberSource::Origin::textsOfDates
               ? texts.elapsedTimeOf(text, dates, 0.0)
               : texts.numberOf(text, 0.0);
  if (!texts.hasRefused()) [[likely]] {
    return false;
  }
  texts = TextColumn({});
  return true;
}

EntryNumbers::EntryNumbers(const NumberSource& source, const BatchColumn& column,
                           const DateContext& dates) {
  const std::span<const std::uint32_t> entries = column.dictionary().positions;
  m_numbers = std::make_unique_for_overwrite<double[]>(entries.size());
  m_isRefused.resize(entries.size());
  TextColumn texts({});
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const unsigned char* text = column.textBytes() + entries[i];
    m_isRefused[i] = convertText(source, text, dates, texts, m_numbers[i]);
    m_hasRefused = m_hasRefused || m_isRefused[i];
  }
}

}  // namespace kelvarin
