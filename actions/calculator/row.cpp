// The calculator at every row that a step debugger watches; the other rows are those of
// RowComputation.
#include "actions/calculator/calculator.h"

namespace kelvarin {

bool Calculator::computeObservedRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.computeAndShow(*row) != RowStep::more;
}

ExpressionAction::RowStep Calculator::computeAndShow(const OneRow& row) {
  const bool isComputed = m_rows->compute(row);
  ObservedRow shown = observedRow(row);
  for (const RowFailure& failure : m_rows->failures()) {
    shown.failures.push_back(observedFailure(failure));
  }
  if (!isComputed) {
    shown.failures.push_back(observedFailure(m_evaluator.rows.lastFailure()));
    showLastRow(shown);
    return failAtRow();
  }
  shown.results = resultsOfRow();
  publishRow();
  return showRow(shown) ? RowStep::more : RowStep::finished;
}

std::vector<ResultValue> Calculator::resultsOfRow() {
  const OneRow* row = getOutputRowForOutputPin(0);
  std::vector<ResultValue> results;
  for (const int column : m_computedColumns) {
    ResultValue result{row->colName(column), {}};
    if (row->getMetaType(column) == MetaTypeColumn::text) {
      result.value.type = ExpressionValue::Type::text;
      result.value.text = row->col(column, nullptr);
    } else {
      result.value.number = row->colAsDouble(column, nullptr);
    }
    results.push_back(std::move(result));
  }
  return results;
}

}  // namespace kelvarin
