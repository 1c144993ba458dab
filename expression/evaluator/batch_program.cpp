#include "expression/evaluator/batch_program.h"

#include <algorithm>

namespace kelvarin {

namespace {

// With many variables fewer rows, so that memory stays bounded.
std::size_t rowsThatFit(std::size_t columns) {
  constexpr std::size_t kMaxRows = 1024;
  constexpr std::size_t kMinRows = 64;
  constexpr std::size_t kMaxValues = 128 * 1024;
  return std::clamp(kMaxValues / columns, kMinRows, kMaxRows);
}

}  // namespace

std::unique_ptr<const BatchProgram> BatchProgram::of(const ExpressionSet& expressions) {
  const RowBinding& binding = expressions.binding();
  if (binding.countsValues() || expressions.outputCount() == 0) {
    return nullptr;
  }
  const int nullKeyMode = expressions.options().keyCast.nullOnInput;
  const std::vector<NumberSource> sources = binding.numberSources(expressions.dates(), nullKeyMode);
  std::unique_ptr<BatchProgram> program(new BatchProgram);
  for (int i = 0; i < expressions.outputCount(); ++i) {
    if (!program->addOutput(expressions.output(i), sources)) {
      return nullptr;
    }
  }
  program->m_columnsOfKeys = binding.columnsOfStoppingKeys(nullKeyMode);
  program->m_rowsAtOnce = rowsThatFit(program->m_variables.size() + 1);
  return program;
}

bool BatchProgram::addOutput(const CompiledOutput& output,
                             const std::vector<NumberSource>& sources) {
  NumberExpression* expression = output.expression->asNumberExpression();
  if (expression == nullptr || output.use == ResultUse::anyValue) {
    return false;
  }
  const ColumnsCall call = expression->columnsCall();
  m_calls.push_back(call);
  return call.function != nullptr && std::ranges::all_of(call.elements, [&](std::size_t variable) {
           return addVariable(variable, sources);
         });
}

bool BatchProgram::addVariable(std::size_t variable, const std::vector<NumberSource>& sources) {
  if (std::ranges::find(m_variables, variable, &NumberSource::variable) != m_variables.end()) {
    return true;
  }
  const auto source = std::ranges::find(sources, variable, &NumberSource::variable);
  if (source == sources.end()) {
    return false;
  }
  m_variables.push_back(*source);
  m_storeSize = std::max(m_storeSize, variable + 1);
  m_needsRowNumbers |= source->origin == NumberSource::Origin::rowNumber;
  return true;
}

bool BatchProgram::mayEvaluateAnyRow() const {
  return !m_needsRowNumbers && m_columnsOfKeys.empty() &&
         std::ranges::all_of(m_calls, &ColumnsCall::isCheap);
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
