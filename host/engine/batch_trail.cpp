#include "host/engine/batch_trail.h"

namespace kelvarin {

void BatchTrail::settle(std::size_t rows) {
  if (rows <= m_rowsSettled) {
    return;
  }
  const auto added = static_cast<long long>(rows - m_rowsSettled);
  m_rowsSettled = rows;
  if (m_pin != nullptr) {
    m_pin->rowsPublished += added;
  }
  if (m_rowsRead != nullptr) {
    *m_rowsRead += added;
  }
  settleInput();
}

void BatchTrail::settleRest() {
  m_isRestTaken = true;
  settleInput();
}

void BatchTrail::settleInput() {
  if (m_origin.maker == nullptr) {
    return;
  }
  const bool isAll = m_isRestTaken && m_rowsSettled == rowCount();
  const std::size_t inputRows = isAll ? m_origin.result.rowsDone : inputRowsFor(m_rowsSettled);
  m_origin.maker->countRows(m_origin.result, m_inputRowsSettled, inputRows);
  m_inputRowsSettled = inputRows;
  if (m_origin.parent != nullptr) {
    const std::size_t end = m_origin.firstInParent + inputRows;
    if (isAll) {
      m_origin.parent->settleAndAskOn(end);
    } else {
      m_origin.parent->settle(end);
    }
  }
}

// Only what an action has made leaves rows out, and so may have taken some behind its last one.
void BatchTrail::settleAndAskOn(std::size_t rows) {
  settle(rows);
  if (m_origin.maker != nullptr && rows == rowCount()) {
    settleRest();
  }
}

std::size_t BatchTrail::rowCount() const {
  return m_origin.result.outputs[m_pinIndex]->rowCount();
}

std::size_t BatchTrail::inputRowsFor(std::size_t rows) const {
  if (rows == 0) {
    return 0;
  }
  const RowSelection& inputRows = m_origin.result.inputRows[m_pinIndex];
  return inputRows == nullptr ? rows : inputRows[rows - 1] + 1;
}

void settleInput(BatchTrail::Origin& origin) {
  origin.maker->countRows(origin.result, 0, origin.result.rowsDone);
  if (origin.parent != nullptr) {
    origin.parent->settleAndAskOn(origin.firstInParent + origin.result.rowsDone);
  }
}

}  // namespace kelvarin
