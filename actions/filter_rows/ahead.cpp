// The filter at a row from which on rows are in hand.
#include <algorithm>

#include "actions/filter_rows/filter_rows.h"
#include "expression/evaluator/result_writer.h"

namespace kelvarin {

// False: the row is one of those that are evaluated by themselves.
bool FilterRows::decideAhead() {
  const RowsAhead rows = rowsAheadOnInPin(0);
  std::size_t count = m_evaluator.evaluateAhead(rows);
  m_nextDecided = 0;
  m_decided = {};
  if (count == 0) {
    m_lookout.sawNothing(m_evaluator.canEvaluateAhead());
    return false;
  }
  m_mustLoadRows = m_evaluator.mustLoadRows();
  m_decisions.resize(std::max(m_decisions.size(), count));
  const double* numbers = m_evaluator.resultsAhead(0).numbers();
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
  for (const bool wanted : {true, false}) {
    const int pin = wanted ? 0 : 1;
    m_rowsOfPin[pin].select(rows, m_decided, wanted);
    offerRowsOnOutputPin(pin, m_rowsOfPin[pin], wanted ? kept : count - kept);
  }
  return true;
}

}  // namespace kelvarin
