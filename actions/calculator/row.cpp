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
  ObservedRow& shown = observedRow(row);
  for (const RowFailure& failure : m_rows->failures()) {
    shown.failures.push_back(observedFailure(failure));
  }
  if (!isComputed) {
    shown.failures.push_back(observedFailure(m_evaluator.rows.lastFailure()));
    showLastRow(shown);
    return failAtRow();
  }
  showResults(shown.results);
  publishRow();
  return showRow(shown) ? RowStep::more : RowStep::finished;
}

QStringList Calculator::resultNames() {
  const OneRow* row = getOutputRowForOutputPin(0);
  QStringList names;
  for (const int column : m_computedColumns) {
    names += row->colName(column);
  }
  return names;
}

void Calculator::showResults(std::vector<ExpressionValue>& results) {
  const OneRow* row = getOutputRowForOutputPin(0);
  for (const int column : m_computedColumns) {
    if (row->getMetaType(column) == MetaTypeColumn::text) {
      results.push_back({ExpressionValue::Type::text, kNullNumber, row->col(column, nullptr)});
    } else {
      results.push_back(ExpressionValue::ofNumber(row->colAsDouble(column, nullptr)));
    }
  }
}

}  // namespace kelvarin
