// The calculator at every row.
#include "actions/calculator/calculator.h"

namespace kelvarin {

template <int kOutputs, bool kUpdatesNumbers>
ExpressionAction::RowStep Calculator::evaluateRow(const OneRow& row) {
  if (m_evaluator.rows.loadRow(row) == RowOutcome::stop) {
    return failAtRow();
  }
  unsigned char** columns = passColumnsOn(row);
  if (!evaluateOutputs<kOutputs>()) {
    return failAtRow();
  }
  if constexpr (kUpdatesNumbers) {
    for (const UpdatedNumber& updated : m_updatedNumbers) {
      columns[updated.column] = updated.result;
    }
  }
  return publishRow();
}

ExpressionAction::RowStep Calculator::evaluateRowOfAnyPlan(const OneRow& row) {
  return evaluateRow<kAnyNumber, true>(row);
}

template <int kOutputs, bool kUpdatesNumbers>
bool Calculator::computeRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  if (row == nullptr) {
    return true;
  }
  if (self.isEvaluatedAhead()) {
    return self.publishEvaluatedRow(*row) != RowStep::more;
  }
  return self.evaluateRow<kOutputs, kUpdatesNumbers>(*row) != RowStep::more;
}

// What can fail is evaluated here, in its turn.
ExpressionAction::RowStep Calculator::publishEvaluatedRow(const OneRow& row) {
  if (m_mustLoadRows && m_evaluator.rows.loadRow(row) == RowOutcome::stop) {
    return failAtRow();
  }
  unsigned char** columns = passColumnsOn(row);
  for (const int output : m_outputsByRow) {
    if (m_evaluator.rows.evaluate(output) == RowOutcome::stop) {
      return failAtRow();
    }
  }
  for (const UpdatedNumber& updated : m_updatedNumbers) {
    columns[updated.column] = updated.result;
  }
  for (ColumnAhead& ahead : m_columnsAhead) {
    columns[ahead.column] = ahead.next;
    ahead.next += ahead.step;
  }
  --m_rowsEvaluated;
  return publishRow();
}

ActionItem::ComputeRoutine Calculator::routineForRows() const {
  static constexpr ComputeRoutine kRoutines[][2] = {
      {&computeRow<kAnyNumber, false>, &computeRow<kAnyNumber, true>},
      {&computeRow<1, false>, &computeRow<1, true>},
      {&computeRow<2, false>, &computeRow<2, true>},
      {&computeRow<3, false>, &computeRow<3, true>},
  };
  const std::size_t outputs = m_outputs.size() <= 3 ? m_outputs.size() : kAnyNumber;
  return kRoutines[outputs][m_updatedNumbers.empty() ? 0 : 1];
}

bool Calculator::computeObservedRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.evaluateObservedRow(*row) != RowStep::more;
}

ExpressionAction::RowStep Calculator::evaluateObservedRow(const OneRow& row) {
  const RowStep step = evaluateRowOfAnyPlan(row);
  if (step != RowStep::more) {
    return step;
  }
  const OneRow* computed = getOutputRowForOutputPin(0);
  QStringList results;
  for (const int column : m_columnOfOutput) {
    results += computed->col(column, nullptr);
  }
  return showRow(row, results) ? RowStep::more : RowStep::finished;
}

}  // namespace kelvarin
