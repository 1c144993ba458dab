#include "expression/evaluator/batch_evaluation.h"

#include <algorithm>
#include <numeric>

#include "expression/evaluator/key_cast.h"
#include "host/contract/rows_at_once.h"

namespace kelvarin {

namespace {

// Below, the preparations cost more than they save.
constexpr std::size_t kMinRows = 8;

}  // namespace

void BatchEvaluation::clear() {
  m_outputs.clear();
  m_variables.clear();
  m_columns.clear();
  m_sources.clear();
  m_rowsAtOnce = 0;
}

void BatchEvaluation::start() {
  clear();
  m_sources = m_expressions.binding().numberSources(m_expressions.dates(),
                                                    m_expressions.options().keyCast.nullOnInput);
  m_sources.push_back({});  // the row number
  for (int i = 0; i < m_expressions.outputCount(); ++i) {
    add(i);
  }
}

const NumberSource* BatchEvaluation::sourceOf(std::size_t variable) const {
  const auto found = std::find_if(m_sources.begin(), m_sources.end(), [&](const NumberSource& one) {
    return one.variable == variable;
  });
  return found == m_sources.end() ? nullptr : &*found;
}

void BatchEvaluation::add(int index) {
  const CompiledOutput& output = m_expressions.output(index);
  NumberExpression* expression = output.expression->asNumberExpression();
  if (expression == nullptr || output.use == ResultUse::anyValue) {
    return;
  }
  const ColumnsCall call = expression->columnsCall();
  const bool hasSources =
      std::all_of(call.elements.begin(), call.elements.end(),
                  [this](std::size_t variable) { return sourceOf(variable) != nullptr; });
  if (call.function == nullptr || !hasSources) {
    return;
  }
  const bool isKey = output.use == ResultUse::column && output.meta == MetaTypeColumn::key;
  m_outputs.push_back({index, call, isKey ? &m_expressions.options().keyCast : nullptr, {}, {}});
  for (const std::size_t variable : call.elements) {
    m_columns.resize(std::max(m_columns.size(), variable + 1));
    const bool isKnown =
        std::any_of(m_variables.begin(), m_variables.end(),
                    [&](const Variable& other) { return other.source.variable == variable; });
    if (!isKnown) {
      m_variables.push_back({*sourceOf(variable), {}, {}});
    }
  }
}

bool BatchEvaluation::mustLoadRows() const {
  return m_outputs.size() < static_cast<std::size_t>(m_expressions.outputCount()) ||
         m_expressions.binding().hasEffects(m_expressions.options().keyCast.nullOnInput);
}

std::size_t BatchEvaluation::evaluate(const RowsAhead& rows) {
  if (rows.count < kMinRows || m_outputs.empty()) {
    return 0;
  }
  reserve();
  std::size_t count = std::min(rows.count, m_rowsAtOnce);
  if (!load(rows, count, m_expressions.variables().rowNumber())) {
    return 0;
  }
  for (Output& output : m_outputs) {
    output.call(m_columns.data(), count, output.numbers.data());
    if (output.keyCast != nullptr) {
      count = castToKeys(output, count);
    }
  }
  return count;
}

void BatchEvaluation::reserve() {
  if (m_rowsAtOnce > 0) {
    return;
  }
  m_rowsAtOnce = rowsAtOnce(m_outputs.size() + m_variables.size());
  for (Output& output : m_outputs) {
    output.numbers.resize(m_rowsAtOnce);
    output.keys.resize(output.keyCast == nullptr ? 0 : m_rowsAtOnce);
  }
  for (Variable& variable : m_variables) {
    variable.numbers.resize(m_rowsAtOnce);
    variable.keys.resize(variable.source.origin == NumberSource::Origin::keys ? m_rowsAtOnce : 0);
  }
}

// False, once for each of them, where a column's values come row by row only.
bool BatchEvaluation::load(const RowsAhead& rows, std::size_t count, double rowNumber) {
  for (Variable& variable : m_variables) {
    const double*& numbers = m_columns[variable.source.variable];
    switch (variable.source.origin) {
      case NumberSource::Origin::rowNumber:
        std::iota(variable.numbers.data(), variable.numbers.data() + count, rowNumber);
        numbers = variable.numbers.data();
        break;
      case NumberSource::Origin::numbers:
        numbers = numbersOf(variable, rows, count);
        break;
      case NumberSource::Origin::keys:
        numbers = numbersOfKeys(variable, rows, count);
        break;
    }
    if (numbers == nullptr) {
      giveUp(variable.source.variable);
      return false;
    }
  }
  return true;
}

const double* BatchEvaluation::numbersOf(Variable& variable, const RowsAhead& rows,
                                         std::size_t count) {
  double* buffer = variable.numbers.data();
  const double* numbers = rows.numbers(variable.source.column, 0, count, buffer);
  if (numbers == nullptr || isNullNumber(variable.source.ofNull)) {
    return numbers;
  }
  std::transform(numbers, numbers + count, buffer, [&](double number) {
    return isNullNumber(number) ? variable.source.ofNull : number;
  });
  return buffer;
}

const double* BatchEvaluation::numbersOfKeys(Variable& variable, const RowsAhead& rows,
                                             std::size_t count) {
  const std::uint32_t* keys = rows.keys(variable.source.column, 0, count, variable.keys.data());
  if (keys == nullptr) {
    return nullptr;
  }
  std::transform(keys, keys + count, variable.numbers.data(),
                 [&](std::uint32_t key) { return isNullKey(key) ? variable.source.ofNull : key; });
  return variable.numbers.data();
}

// The outputs that need the variable are evaluated row by row from now on.
void BatchEvaluation::giveUp(std::size_t variable) {
  std::erase_if(m_outputs, [variable](const Output& output) {
    return std::find(output.call.elements.begin(), output.call.elements.end(), variable) !=
           output.call.elements.end();
  });
  std::erase_if(m_variables,
                [variable](const Variable& used) { return used.source.variable == variable; });
}

// How many there are before one that stops the run.
std::size_t BatchEvaluation::castToKeys(Output& output, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (!castToKey(output.numbers[i], *output.keyCast, output.keys[i])) [[unlikely]] {
      return i;
    }
  }
  return count;
}

ColumnResults BatchEvaluation::results(int output) {
  const auto found = std::find_if(m_outputs.begin(), m_outputs.end(),
                                  [output](const Output& one) { return one.index == output; });
  if (found == m_outputs.end()) {
    return {};
  }
  return found->keyCast == nullptr
             ? ColumnResults{reinterpret_cast<unsigned char*>(found->numbers.data()),
                             sizeof(double)}
             : ColumnResults{reinterpret_cast<unsigned char*>(found->keys.data()),
                             sizeof(std::uint32_t)};
}

}  // namespace kelvarin
