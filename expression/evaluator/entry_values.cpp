#include "expression/evaluator/entry_values.h"

#include <algorithm>

#include "expression/backends/string_values.h"

namespace kelvarin {

namespace {

// Of the texts that a part makes; beyond, rows are cheaper to keep.
constexpr std::size_t kMaxTextBytes = std::size_t{1} << 20;

bool isOwner(const std::weak_ptr<const void>& kept, const std::shared_ptr<const void>& owner) {
  return !kept.owner_before(owner) && !owner.owner_before(kept);
}

}  // namespace

// A text of the String Parser's null bytes is null there.
ColumnText columnText(const unsigned char* bytes) {
  const std::string_view text = textFromBytes(bytes);
  return isNullText(bytes) || text == kNullTextBytes ? ColumnText() : ColumnText(text);
}

EntryValues::EntryValues(const EntryProgram& program, std::size_t variable,
                         const BatchColumn& column, const FunctionContext& functions)
    : m_parts(program.parts().size()) {
  ColumnEvaluation evaluation(functions);
  m_areKnown = true;
  for (std::size_t i = 0; i < m_parts.size() && m_areKnown; ++i) {
    const EntryProgram::Part& part = program.parts()[i];
    m_areKnown = part.variable != variable || compute(part, column, evaluation, m_parts[i]);
  }
}

bool EntryValues::compute(const EntryProgram::Part& part, const BatchColumn& column,
                          ColumnEvaluation& evaluation, PartValues& values) {
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

EntryValuesPointer RecentEntryValues::find(std::size_t variable, const BatchColumn& column) {
  const std::lock_guard lock(m_mutex);
  const auto kept = std::ranges::find_if(m_kept, [&](const Kept& each) {
    return each.variable == variable && each.values != nullptr &&
           isOwner(each.owner, column.owner());
  });
  return kept == m_kept.end() ? nullptr : kept->values;
}

// Two threads may compute the same, which takes less time than to let one wait.
EntryValuesPointer RecentEntryValues::of(std::size_t variable, const BatchColumn& column,
                                         const FunctionContext& functions) {
  if (EntryValuesPointer known = find(variable, column)) {
    return known;
  }
  auto values = std::make_shared<const EntryValues>(m_program, variable, column, functions);
  const std::lock_guard lock(m_mutex);
  m_kept[m_next] = {variable, column.owner(), values};
  m_next = (m_next + 1) % kKept;
  return values;
}

}  // namespace kelvarin
