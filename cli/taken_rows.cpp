#include "cli/taken_rows.h"

namespace kelvarin {

TakenRows::TakenRows(XMLNode node, GlobalParameters* parameters, RowTaker& taker)
    : ActionItem(node, parameters), m_taker(taker) {
  m_inputPinCount = 1;
  m_outputPinCount = 0;
  m_endpoint = static_cast<std::int32_t>(Endpoint::writer);
}

bool TakenRows::takeFirstBatch(ActionItem* action) {
  auto& self = static_cast<TakenRows&>(*action);
  const TakenBatch taken = self.getNextBatchFromInPin(0);
  const OneRow* columns = self.announcedColumnsOfInPin(0);
  if (columns == nullptr) {
    return true;  // whoever should announce them has failed
  }
  self.m_taker.begin(*columns, self.run() == nullptr ? nullptr : self.run()->tasks);
  self.computeRoutine = &TakenRows::takeBatch;
  return self.take(taken.batch);
}

bool TakenRows::takeBatch(ActionItem* action) {
  return static_cast<TakenRows&>(*action).take(action->getNextBatchFromInPin(0).batch);
}

// True: it has finished.
bool TakenRows::take(const RowBatchPointer& batch) {
  if (batch != nullptr) {
    return !m_taker.take(batch);
  }
  if (run() == nullptr || run()->isRunning()) {
    m_taker.end();
  }
  return true;
}

}  // namespace kelvarin
