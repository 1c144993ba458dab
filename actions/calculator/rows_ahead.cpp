// The calculator at a row whose successors are known already: it evaluates them as one batch.
#include "actions/calculator/calculator.h"
#include "actions/calculator/scalar_rows.h"

namespace kelvarin {

// False: the row is one of those that are evaluated by themselves.
bool ScalarRows::evaluateAhead() {
  const RowsAhead rows = m_action.rowsAheadOnInPin(0);
  m_rowsEvaluated = m_batches.evaluate(rows);
  if (m_rowsEvaluated == 0) {
    m_lookout.sawNothing(m_batches.isPossible());
    disconnectResultsAhead();
    return false;
  }
  m_mustLoadRows = m_batches.mustLoadRows();
  connectResultsAhead();
  if (!m_counts.empty()) {
    countResultsAhead();
  }
  m_computedRows.setInput(rows);
  const bool canBeTaken = rows.canBeTaken && !m_mustLoadRows && m_outputsByRow.empty();
  m_action.offerRowsOnOutputPin(0, m_computedRows, m_rowsEvaluated,
                                canBeTaken ? &ScalarRows::takeRows : nullptr);
  return true;
}

void ScalarRows::takeRows(ActionItem* action, std::size_t count) {
  auto& self = Calculator::rowsOf<ScalarRows>(*action);
  for (ColumnAhead& ahead : self.m_columnsAhead) {
    ahead.next += count * ahead.step;
  }
  self.m_rowsEvaluated -= count;
  self.m_evaluation.advanceRows(count);
  action->takeRowsOfInPin(0, count);
}

void ScalarRows::connectResultsAhead() {
  m_columnsAhead.clear();
  m_outputsByRow.clear();
  const OneRow& row = *m_action.getOutputRowForOutputPin(0);
  m_computedRows.setColumnCount(static_cast<std::size_t>(row.sz()));
  for (int output = 0; output < m_outputCount; ++output) {
    const ColumnResults results = m_batches.results(output);
    const int column = m_columnOfOutput[static_cast<std::size_t>(output)];
    m_computedRows.setResults(column, results);
    if (results.values == nullptr) {
      m_outputsByRow.push_back(output);
    } else {
      m_columnsAhead.push_back(
          {output, results.values, results.step, column, m_evaluation.resultCell(output)});
    }
  }
}

void ScalarRows::disconnectResultsAhead() {
  for (const ColumnAhead& ahead : m_columnsAhead) {
    m_columns[ahead.column] = ahead.cell;
  }
  m_columnsAhead.clear();
}

}  // namespace kelvarin
