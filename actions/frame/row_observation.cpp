// An expression action's rows as a step debugger is shown them.
#include <algorithm>

#include "actions/frame/expression_action.h"

namespace kelvarin {

ObservedRow& ExpressionAction::observedRow(const OneRow& input) {
  ObservedRow& shown = m_observedRow;
  if (shown.names == nullptr) {
    // Sampling shows a result, though nothing is compiled.
    const int outputs = std::max(1, m_evaluator.expressions.outputCount());
    shown.names = std::make_shared<RowNames>(
        RowNames{m_evaluator.rows.shownVariables(input), resultNames(), outputs});
  }
  shown.number = rowNumber();
  m_evaluator.rows.showValues(input, shown.names->variables, shown.variables);
  shown.results.clear();
  shown.failures.clear();
  return shown;
}

ObservedFailure ExpressionAction::observedFailure(const RowFailure& failure) const {
  return {failureText(failure), failure.output, failure.name, failure.error};
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
