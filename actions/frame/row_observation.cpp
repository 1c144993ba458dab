// An expression action's rows as a step debugger is shown them.
#include "actions/frame/expression_action.h"

namespace kelvarin {

ObservedRow ExpressionAction::observedRow(const OneRow& input) const {
  ObservedRow shown;
  shown.number = rowNumber();
  shown.variables = m_evaluator.rows.variablesOf(input);
  return shown;
}

ObservedFailure ExpressionAction::observedFailure(const RowFailure& failure) const {
  return {failureText(failure), failure.output, failure.error};
}

bool ExpressionAction::showRow(const ObservedRow& row) {
  m_observer->rowEvaluated(row);
  return m_observer->waitForStep();
}

void ExpressionAction::showLastRow(ObservedRow& row) {
  row.isLast = true;
  m_observer->rowEvaluated(row);
}

}  // namespace kelvarin
