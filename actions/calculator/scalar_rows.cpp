#include "actions/calculator/scalar_rows.h"

#include "actions/calculator/calculator.h"

namespace kelvarin {

// A new number's column points at its result for the whole run; texts are stored through their
// column's slot.
ScalarRows::ScalarRows(ActionItem& action, ExpressionEvaluator& evaluator,
                       const std::vector<OutputVariable>& outputs, const OutputColumns& columns)
    : RowComputation(action, evaluator.rows, evaluator.expressions.outputCount()),
      m_action(action),
      m_batches(evaluator.batches),
      m_columnOfOutput(columns.columnOfOutput) {
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const int output = static_cast<int>(i);
    const int column = m_columnOfOutput[i];
    m_typeOfOutput.push_back(columns.metas[column].type());
    if (!isNumeric(outputs[i])) {
      m_evaluation.setTextTarget(output, &m_columns[column]);
    } else if (outputs[i].update) {
      m_updatedNumbers.push_back({m_evaluation.resultCell(output), column});
    } else {
      m_columns[column] = m_evaluation.resultCell(output);
    }
  }
  m_lookout.open(m_batches.isPossible());
}

template <int kOutputs, bool kUpdatesNumbers>
bool ScalarRows::computeRow(const OneRow& row) {
  if (m_evaluation.loadRow(row) == RowOutcome::stop) {
    return false;
  }
  passColumnsOn(row);
  if (!evaluateOutputs<kOutputs>()) {
    return false;
  }
  if constexpr (kUpdatesNumbers) {
    for (const UpdatedNumber& updated : m_updatedNumbers) {
      m_columns[updated.column] = updated.result;
    }
  }
  for (std::size_t i = 0; i < m_counts.size(); ++i) {
    countResults(static_cast<int>(i));
  }
  return true;
}

// What can fail is evaluated here, in its turn.
bool ScalarRows::takeEvaluatedRow(const OneRow& row) {
  if (m_mustLoadRows && m_evaluation.loadRow(row) == RowOutcome::stop) {
    return false;
  }
  passColumnsOn(row);
  for (const int output : m_outputsByRow) {
    if (m_evaluation.evaluate(output) == RowOutcome::stop) {
      return false;
    }
  }
  for (const UpdatedNumber& updated : m_updatedNumbers) {
    m_columns[updated.column] = updated.result;
  }
  for (ColumnAhead& ahead : m_columnsAhead) {
    m_columns[ahead.column] = ahead.next;
    ahead.next += ahead.step;
  }
  if (!m_counts.empty()) {
    for (const int output : m_outputsByRow) {
      countResults(output);
    }
  }
  --m_rowsEvaluated;
  return true;
}

// When the results have been computed, so all at once.
void ScalarRows::countResultsAhead() {
  for (const ColumnAhead& ahead : m_columnsAhead) {
    const auto output = static_cast<std::size_t>(ahead.output);
    m_counts[output].addAll(m_typeOfOutput[output], ahead.next, m_rowsEvaluated);
  }
}

std::vector<ValueCounts> ScalarRows::valueCounts() const {
  std::vector<ValueCounts> counts = m_counts;
  for (const ColumnAhead& ahead : m_columnsAhead) {
    const auto output = static_cast<std::size_t>(ahead.output);
    if (output < counts.size()) {
      counts[output] -= ValueCounts().addAll(m_typeOfOutput[output], ahead.next, m_rowsEvaluated);
    }
  }
  return counts;
}

ActionItem::ComputeRoutine ScalarRows::routine() const {
  using Rows = ScalarRows;
  static constexpr ActionItem::ComputeRoutine kRoutines[][2] = {
      {&Calculator::computeRow<Rows, &Rows::computeNextRow<kAnyNumber, false>>,
       &Calculator::computeRow<Rows, &Rows::computeNextRow<kAnyNumber, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeNextRow<1, false>>,
       &Calculator::computeRow<Rows, &Rows::computeNextRow<1, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeNextRow<2, false>>,
       &Calculator::computeRow<Rows, &Rows::computeNextRow<2, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeNextRow<3, false>>,
       &Calculator::computeRow<Rows, &Rows::computeNextRow<3, true>>},
  };
  const int outputs = m_outputCount <= 3 ? m_outputCount : kAnyNumber;
  return kRoutines[outputs][m_updatedNumbers.empty() ? 0 : 1];
}

}  // namespace kelvarin
