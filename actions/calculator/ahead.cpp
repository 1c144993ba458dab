// The calculator at a row from which on rows are in hand.
#include "actions/calculator/calculator.h"

namespace kelvarin {

// False: the row is one of those that are evaluated by themselves.
bool Calculator::evaluateAhead() {
  const RowsAhead rows = rowsAheadOnInPin(0);
  m_rowsEvaluated = m_evaluator.batches.evaluate(rows);
  if (m_rowsEvaluated == 0) {
    m_lookout.sawNothing(m_evaluator.batches.isPossible());
    disconnectResultsAhead();
    return false;
  }
  m_mustLoadRows = m_evaluator.batches.mustLoadRows();
  connectResultsAhead();
  m_computedRows.setInput(rows);
  const bool canBeTaken = rows.canBeTaken && !m_mustLoadRows && m_outputsByRow.empty();
  offerRowsOnOutputPin(0, m_computedRows, m_rowsEvaluated,
                       canBeTaken ? &Calculator::takeRows : nullptr);
  return true;
}

void Calculator::takeRows(ActionItem* action, std::size_t count) {
  auto& self = static_cast<Calculator&>(*action);
  for (ColumnAhead& ahead : self.m_columnsAhead) {
    ahead.next += count * ahead.step;
  }
  self.m_rowsEvaluated -= count;
  self.m_evaluator.rows.advanceRows(count);
  self.takeRowsOfInPin(0, count);
}

void Calculator::connectResultsAhead() {
  m_columnsAhead.clear();
  m_outputsByRow.clear();
  m_computedRows.setColumnCount(static_cast<std::size_t>(getOutputRowForOutputPin(0)->sz()));
  for (int output = 0; output < m_evaluator.expressions.outputCount(); ++output) {
    const ColumnResults results = m_evaluator.batches.results(output);
    const int column = m_columnOfOutput[static_cast<std::size_t>(output)];
    m_computedRows.setResults(column, results);
    if (results.values == nullptr) {
      m_outputsByRow.push_back(output);
    } else {
      m_columnsAhead.push_back(
          {results.values, results.step, column, m_evaluator.rows.resultCell(output)});
    }
  }
}

void Calculator::disconnectResultsAhead() {
  unsigned char** places = getOutputRowForOutputPin(0)->getAllColForWrite();
  for (const ColumnAhead& ahead : m_columnsAhead) {
    places[ahead.column] = ahead.cell;
  }
  m_columnsAhead.clear();
}

}  // namespace kelvarin
