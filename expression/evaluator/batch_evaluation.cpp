#include "expression/evaluator/batch_evaluation.h"

#include <algorithm>
#include <numeric>

namespace kelvarin {

BatchEvaluation::BatchEvaluation(const BatchProgram& program, const RowBatch& batch,
                                 long long firstRow)
    : m_program(program),
      m_batch(batch),
      m_firstRow(static_cast<double>(firstRow)),
      m_columns(program.m_storeSize),
      m_buffers(std::make_unique_for_overwrite<double[]>((program.m_variables.size() + 1) *
                                                         program.rowsAtOnce())) {}

void BatchEvaluation::load(std::size_t begin, std::size_t end) {
  m_begin = begin;
  m_rowCount = std::min(end - begin, m_program.rowsAtOnce());
  m_firstStoredRow = m_batch.storedRow(begin);
  const bool isContiguous =
      m_batch.storedRow(begin + m_rowCount - 1) == m_firstStoredRow + m_rowCount - 1;
  m_selection = isContiguous ? nullptr : m_batch.selection() + begin;
  for (std::size_t i = 0; i < m_program.m_variables.size(); ++i) {
    loadVariable(i, 0);
  }
}

void BatchEvaluation::loadElement(int element) {
  for (std::size_t i = 0; i < m_program.m_variables.size(); ++i) {
    if (m_program.m_variables[i].columns.size() > 1) {
      loadVariable(i, element);
    }
  }
}

void BatchEvaluation::loadVariable(std::size_t index, int element) {
  const NumberSource& source = m_program.m_variables[index];
  const double*& numbers = m_columns[source.variable];
  if (source.origin == NumberSource::Origin::rowNumber) {
    double* rowNumbers = buffer(index);
    std::iota(rowNumbers, rowNumbers + m_rowCount, m_firstRow + static_cast<double>(m_begin));
    numbers = rowNumbers;
    return;
  }
  const std::size_t ofElement = source.columns.size() > 1 ? static_cast<std::size_t>(element) : 0;
  const BatchColumn& column = m_batch.column(static_cast<std::size_t>(source.columns[ofElement]));
  if (source.origin == NumberSource::Origin::keys) {
    numbers = converted(index, column.keys(), [&source](std::uint32_t key) {
      return isNullKey(key) ? source.ofNull : static_cast<double>(key);
    });
  } else if (!isNullNumber(source.ofNull)) {
    numbers = converted(index, column.numbers(), [&source](double number) {
      return isNullNumber(number) ? source.ofNull : number;
    });
  } else if (isContiguous()) {
    numbers = column.numbers() + m_firstStoredRow;
  } else {
    numbers = converted(index, column.numbers(), [](double number) { return number; });
  }
}

// Values of selected rows are gathered, so that the code for columns gets them one after another.
template <typename Value, typename Convert>
const double* BatchEvaluation::converted(std::size_t index, const Value* values, Convert convert) {
  double* numbers = buffer(index);
  if (isContiguous()) {
    std::transform(values + m_firstStoredRow, values + m_firstStoredRow + m_rowCount, numbers,
                   convert);
    return numbers;
  }
  for (std::size_t i = 0; i < m_rowCount; ++i) {
    numbers[i] = convert(values[m_selection[i]]);
  }
  return numbers;
}

const double* BatchEvaluation::numbers(int output) {
  double* results = buffer(m_program.m_variables.size());
  evaluateInto(output, results);
  return results;
}

void BatchEvaluation::evaluateInto(int output, double* numbers) const {
  m_program.m_calls[static_cast<std::size_t>(output)](m_columns.data(), m_rowCount, numbers);
}

}  // namespace kelvarin
