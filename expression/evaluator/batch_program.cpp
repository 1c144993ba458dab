#include "expression/evaluator/batch_program.h"

#include <algorithm>

#include "host/contract/late_texts.h"

namespace kelvarin {

namespace {

// With many variables fewer rows, so that memory stays bounded.
std::size_t rowsThatFit(std::size_t columns) {
  constexpr std::size_t kMaxRows = 1024;
  constexpr std::size_t kMinRows = 64;
  constexpr std::size_t kMaxValues = 128 * 1024;
  return std::clamp(kMaxValues / columns, kMinRows, kMaxRows);
}

// False where there is no such source.
template <typename Source>
bool addSource(std::size_t variable, const std::vector<Source>& sources, std::vector<Source>& used,
               std::size_t& end) {
  if (std::ranges::find(used, variable, &Source::variable) != used.end()) {
    return true;
  }
  const auto source = std::ranges::find(sources, variable, &Source::variable);
  if (source == sources.end()) {
    return false;
  }
  used.push_back(*source);
  end = std::max(end, variable + 1);
  return true;
}

}  // namespace

std::unique_ptr<const BatchProgram> BatchProgram::of(const ExpressionSet& expressions,
                                                     const RunRecord* run) {
  const RowBinding& binding = expressions.binding();
  if (expressions.outputCount() == 0) {
    return nullptr;
  }
  const int nullKeyMode = expressions.options().keyCast.nullOnInput;
  const Sources sources{binding.numberSources(expressions.dates(), nullKeyMode),
                        binding.textSources()};
  std::unique_ptr<BatchProgram> program(new BatchProgram(expressions.functions()));
  program->m_run = run;
  for (int i = 0; i < expressions.outputCount(); ++i) {
    if (!program->addOutput(expressions.output(i), sources)) {
      return nullptr;
    }
  }
  for (const NumberSource& source : sources.numbers) {
    if (source.isConverted()) {
      program->addNumber(source.variable, sources.numbers);
    }
  }
  program->findNeededTexts();
  program->m_columnsOfKeys = binding.columnsOfStoppingKeys(nullKeyMode);
  program->m_rowsAtOnce = rowsThatFit(program->m_numbers.size() + program->m_texts.size() + 1);
  if (program->usesColumnPrograms()) {
    program->m_rowsAtOnce = std::min(program->m_rowsAtOnce, ColumnProgram::kMaxRows);
  }
  return program;
}

bool BatchProgram::addOutput(const CompiledOutput& output, const Sources& sources) {
  const auto hasNumber = [&](std::size_t variable) { return addNumber(variable, sources.numbers); };
  const auto hasText = [&](std::size_t variable) { return addText(variable, sources.texts); };
  if (const ColumnProgram* program = output.columnProgram.get()) {
    m_outputs.push_back({.native = {},
                         .program = program,
                         .entries = output.entryProgram.get(),
                         .entryValues = std::make_unique<RecentByDictionary<EntryValues>>()});
    return std::ranges::all_of(program->numberVariables(), hasNumber) &&
           std::ranges::all_of(program->textVariables(), hasText);
  }
  NumberExpression* expression = output.expression->asNumberExpression();
  if (expression == nullptr || output.use == ResultUse::anyValue) {
    return false;
  }
  const ColumnsCall call = expression->columnsCall();
  m_outputs.push_back({.native = call, .program = nullptr, .entries = nullptr, .entryValues = {}});
  return call.function != nullptr && std::ranges::all_of(call.elements, hasNumber);
}

bool BatchProgram::addNumber(std::size_t variable, const std::vector<NumberSource>& sources) {
  if (!addSource(variable, sources, m_numbers, m_endOfNumbers)) {
    return false;
  }
  m_needsRowNumbers = std::ranges::any_of(m_numbers, [](const NumberSource& source) {
    return source.origin == NumberSource::Origin::rowNumber;
  });
  return true;
}

bool BatchProgram::addText(std::size_t variable, const std::vector<TextSource>& sources) {
  return addSource(variable, sources, m_texts, m_endOfTexts);
}

bool BatchProgram::usesColumnPrograms() const {
  return std::ranges::any_of(m_outputs,
                             [](const Output& output) { return output.program != nullptr; });
}

bool BatchProgram::convertsTexts() const {
  return std::ranges::any_of(m_numbers, &NumberSource::isConverted);
}

bool BatchProgram::comparesOnly(const TextSource& source) const {
  return source.columns.size() == 1 && std::ranges::all_of(m_outputs, [&](const Output& output) {
           return output.program == nullptr ||
                  std::ranges::find(output.program->textVariables(), source.variable) ==
                      output.program->textVariables().end() ||
                  (output.entries != nullptr && output.entries->isOnlyCompared(source.variable));
         });
}

void BatchProgram::findNeededTexts() {
  const auto add = [this](const std::vector<int>& columns) {
    m_columnsOfTexts.insert(m_columnsOfTexts.end(), columns.begin(), columns.end());
  };
  for (const TextSource& source : m_texts) {
    if (!comparesOnly(source)) {
      add(source.columns);
    }
  }
  for (const NumberSource& source : m_numbers) {
    if (source.isConverted()) {
      add(source.columns);
    }
  }
}

RowBatchPointer BatchProgram::withNeededTexts(const RowBatch& batch) const {
  const auto isLate = [&](std::size_t column) { return batch.column(column).isLate(); };
  if (std::ranges::none_of(m_columnsOfTexts, isLate)) {
    return nullptr;
  }
  std::vector<BatchColumn> columns = batch.columns();
  for (const std::size_t column : m_columnsOfTexts) {
    columns[column] =
        columnWithTexts(columns[column], batch.storedRows(), batch.selection(), batch.rowCount());
  }
  return std::make_shared<RowBatch>(batch.storedRows(), std::move(columns), batch.sharedSelection(),
                                    batch.rowCount());
}

bool BatchProgram::mayEvaluateAnyRow() const {
  return !m_needsRowNumbers && !convertsTexts() && m_columnsOfKeys.empty() &&
         std::ranges::all_of(m_outputs, [](const Output& output) {
           return output.program == nullptr && output.native.isCheap;
         });
}

std::size_t BatchProgram::rowsBeforeFailure(const RowBatch& batch) const {
  std::size_t rows = batch.rowCount();
  for (const int column : m_columnsOfKeys) {
    const std::uint32_t* keys = batch.column(static_cast<std::size_t>(column)).keys();
    std::size_t row = 0;
    while (row < rows && !isNullKey(keys[batch.storedRow(row)])) {
      ++row;
    }
    rows = row;
  }
  return rows;
}

}  // namespace kelvarin
