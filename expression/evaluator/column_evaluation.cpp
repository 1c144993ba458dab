#include "expression/evaluator/column_evaluation.h"

#include <algorithm>
#include <numeric>

#include "expression/evaluator/key_cast.h"
#include "host/contract/rows_at_once.h"

namespace kelvarin {

namespace {

// Below, the preparations cost more than they save.
constexpr std::size_t kLeastRows = 8;

}  // namespace

const NumberSource* ColumnEvaluation::sourceOf(std::size_t place) const {
  const auto found = std::find_if(m_sources.begin(), m_sources.end(),
                                  [&](const NumberSource& one) { return one.place == place; });
  return found == m_sources.end() ? nullptr : &*found;
}

bool ColumnEvaluation::add(int output, const ColumnsCall& call, const KeyCast* keyCast) {
  const bool hasSources =
      std::all_of(call.elements.begin(), call.elements.end(),
                  [this](std::size_t place) { return sourceOf(place) != nullptr; });
  if (call.function == nullptr || !hasSources) {
    return false;
  }
  m_outputs.push_back({output, call, keyCast, {}, {}});
  for (const std::size_t place : call.elements) {
    if (place >= m_columns.size()) {
      m_columns.resize(place + 1);
    }
    const bool isKnown =
        std::any_of(m_variables.begin(), m_variables.end(),
                    [&](const Variable& other) { return other.source.place == place; });
    if (!isKnown) {
      m_variables.push_back({*sourceOf(place), {}, {}});
    }
  }
  return true;
}

std::size_t ColumnEvaluation::evaluate(const RowsAhead& rows, double rowNumber) {
  if (rows.count < kLeastRows || isEmpty()) {
    return 0;
  }
  makeRoom();
  std::size_t count = std::min(rows.count, m_rowsAtOnce);
  if (!load(rows, count, rowNumber)) {
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

void ColumnEvaluation::makeRoom() {
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
bool ColumnEvaluation::load(const RowsAhead& rows, std::size_t count, double rowNumber) {
  for (Variable& variable : m_variables) {
    const double*& numbers = m_columns[variable.source.place];
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
      giveUp(variable.source.place);
      return false;
    }
  }
  return true;
}

const double* ColumnEvaluation::numbersOf(Variable& variable, const RowsAhead& rows,
                                          std::size_t count) {
  double* room = variable.numbers.data();
  const double* numbers = rows.numbers(variable.source.column, 0, count, room);
  if (numbers == nullptr || isNullNumber(variable.source.ofNull)) {
    return numbers;
  }
  std::transform(numbers, numbers + count, room, [&](double number) {
    return isNullNumber(number) ? variable.source.ofNull : number;
  });
  return room;
}

const double* ColumnEvaluation::numbersOfKeys(Variable& variable, const RowsAhead& rows,
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
void ColumnEvaluation::giveUp(std::size_t place) {
  std::erase_if(m_outputs, [place](const Output& output) {
    return std::find(output.call.elements.begin(), output.call.elements.end(), place) !=
           output.call.elements.end();
  });
  std::erase_if(m_variables,
                [place](const Variable& variable) { return variable.source.place == place; });
}

// How many there are before one that stops the run.
std::size_t ColumnEvaluation::castToKeys(Output& output, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (!castToKey(output.numbers[i], *output.keyCast, output.keys[i])) [[unlikely]] {
      return i;
    }
  }
  return count;
}

ColumnResults ColumnEvaluation::resultsOf(int output) {
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
