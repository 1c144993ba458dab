// The calculator at every row that a step debugger watches; the other rows are those of
// RowComputation.
#include "actions/calculator/calculator.h"

namespace kelvarin {

bool Calculator::computeObservedRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.evaluateObservedRow(*row) != RowStep::more;
}

ExpressionAction::RowStep Calculator::evaluateObservedRow(const OneRow& row) {
  const RowStep step = endRow(m_rows->compute(row));
  if (step != RowStep::more) {
    return step;
  }
  const OneRow* computed = getOutputRowForOutputPin(0);
  QStringList results;
  for (const int column : m_computedColumns) {
    results += computed->col(column, nullptr);
  }
  return showRow(results) ? RowStep::more : RowStep::finished;
}

}  // namespace kelvarin
