#include "actions/calculator/scalar_rows.h"

#include "actions/calculator/calculator.h"

namespace kelvarin {

// A new number's column points at its result for the whole run; texts are stored through their
// column's slot.
ScalarRows::ScalarRows(ActionItem& action, RowEvaluation& evaluation,
                       const std::vector<OutputVariable>& outputs, const OutputColumns& columns)
    : RowComputation(action, evaluation, static_cast<int>(outputs.size())),
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
    m_counts[i].add(m_typeOfOutput[i], m_columns[m_columnOfOutput[i]]);
  }
  return true;
}

ActionItem::ComputeRoutine ScalarRows::routine() const {
  using Rows = ScalarRows;
  static constexpr ActionItem::ComputeRoutine kRoutines[][2] = {
      {&Calculator::computeRow<Rows, &Rows::computeRow<kAnyNumber, false>>,
       &Calculator::computeRow<Rows, &Rows::computeRow<kAnyNumber, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeRow<1, false>>,
       &Calculator::computeRow<Rows, &Rows::computeRow<1, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeRow<2, false>>,
       &Calculator::computeRow<Rows, &Rows::computeRow<2, true>>},
      {&Calculator::computeRow<Rows, &Rows::computeRow<3, false>>,
       &Calculator::computeRow<Rows, &Rows::computeRow<3, true>>},
  };
  const int outputs = m_outputCount <= 3 ? m_outputCount : kAnyNumber;
  return kRoutines[outputs][m_updatedNumbers.empty() ? 0 : 1];
}

}  // namespace kelvarin
