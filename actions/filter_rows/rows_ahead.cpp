// The filter at a row whose successors are known already: it evaluates them as one batch.
#include <algorithm>

#include "actions/filter_rows/filter_rows.h"
#include "expression/evaluator/result_writer.h"

namespace kelvarin {

// False: the row is one of those that are evaluated by themselves.
bool FilterRows::decideAhead() {
  const RowsAhead rows = rowsAheadOnInPin(0);
  std::size_t count = m_evaluator.batches.evaluate(rows);
  m_nextDecided = 0;
  m_decided = {};
  if (count == 0) {
    m_lookout.sawNothing(m_evaluator.batches.isPossible());
    return false;
  }
  m_mustLoadRows = m_evaluator.batches.mustLoadRows();
  m_decisions.resize(std::max(m_decisions.size(), count));
  const double* numbers = m_evaluator.batches.results(0).numbers();
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; ++i) {
    m_decisions[i] = isTrueNumber(numbers[i]) ? 1 : 0;
    kept += m_decisions[i];
  }
  if (m_settings.truncate && kept < count) {
    kept = static_cast<std::size_t>(std::find(m_decisions.begin(), m_decisions.end(), 0) -
                                    m_decisions.begin());
    count = kept + 1;
  }
  m_decided = {m_decisions.data(), count};
  const bool canBeTaken = rows.canBeTaken && !m_mustLoadRows;
  m_rowsOfPin[0].select(rows, m_decided, true);
  offerRowsOnOutputPin(0, m_rowsOfPin[0], kept, canBeTaken ? &FilterRows::takeRows<true> : nullptr);
  m_rowsOfPin[1].select(rows, m_decided, false);
  offerRowsOnOutputPin(1, m_rowsOfPin[1], count - kept,
                       canBeTaken ? &FilterRows::takeRows<false> : nullptr);
  return true;
}

// Rows of the other kind go by between those that are taken. Nothing reads them: of an action whose
// pins both have readers no rows are taken together.
template <bool kWanted>
void FilterRows::takeRows(ActionItem* action, std::size_t count) {
  auto& self = static_cast<FilterRows&>(*action);
  const std::size_t begin = self.m_nextDecided;
  std::size_t next = begin;
  for (std::size_t left = count; left > 0; ++next) {
    left -= (self.m_decided[next] != 0) == kWanted ? 1 : 0;
  }
  self.m_nextDecided = next;
  self.m_evaluator.rows.advanceRows(next - begin);
  self.countRowsOfOutputPin(kWanted ? 1 : 0, next - begin - count);
  self.takeRowsOfInPin(0, next - begin);
}

}  // namespace kelvarin
