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
  if (m_origin.maker == nullptr) {
    return;
  }
  const std::size_t inputRows = inputRowsFor(rows);
  m_origin.maker->countRows(m_origin.result, m_inputRowsSettled, inputRows);
  m_inputRowsSettled = inputRows;
  if (m_origin.parent != nullptr) {
    m_origin.parent->settle(m_origin.firstInParent + inputRows);
  }
}

// Whoever takes the last row has seen what comes after it, too.
std::size_t BatchTrail::inputRowsFor(std::size_t rows) const {
  const StageResult& result = m_origin.result;
  const RowBatchPointer& output = result.outputs[m_pinIndex];
  if (rows == output->rowCount()) {
    return result.rowsDone;
  }
  const RowSelection& inputRows = result.inputRows[m_pinIndex];
  return inputRows == nullptr ? rows : inputRows[rows - 1] + 1;
}

void settleInput(BatchTrail::Origin& origin) {
  origin.maker->countRows(origin.result, 0, origin.result.rowsDone);
  if (origin.parent != nullptr) {
    origin.parent->settle(origin.firstInParent + origin.result.rowsDone);
  }
}

}  // namespace kelvarin
