#include "host/engine/row_tap.h"

#include "host/contract/batch_rows.h"
#include "host/engine/run_results.h"

namespace kelvarin {

void RowTap::receive(const OneRow& row) {
  if (isFull()) {
    return;
  }
  passColumns();
  if (m_batch == nullptr) {
    m_batch = std::make_shared<PinRows>(m_columns, m_rowCount);
    m_batchStart = Clock::now();
  }
  m_batch->append(row);
  ++m_rowCount;
  if (isBatchFull()) {
    flush();
  }
}

void RowTap::receive(const RowBatchPointer& batch) {
  if (m_view.sz() == 0) {
    m_view.setNumberOfColumns(m_pin.row.sz());
  }
  BatchRows rows;
  rows.start(batch);
  while (rows.rowsLeft() > 0 && !isFull()) {
    rows.take(m_view.getAllColForWrite());
    receive(m_view);
  }
}

bool RowTap::isBatchFull() const {
  return isFull() || (!m_hasPassedRows && m_rowCount == kFirstRows) ||
         m_batch->rowCount() == kRowsInBatch || m_batch->byteCount() >= kBytesInBatch;
}

void RowTap::flushWhenDue() {
  const auto longestWait = m_hasPassedRows ? kWaitOfRows : kWaitOfFirstRows;
  if (m_batch != nullptr && Clock::now() - m_batchStart > longestWait) {
    flush();
  }
}

void RowTap::finish() {
  if (m_pin.isAnnounced) {
    passColumns();
  }
  if (m_batch != nullptr) {
    flush();
  }
}

void RowTap::passColumns() {
  if (m_hasColumns) {
    return;
  }
  m_hasColumns = true;
  m_columns = columnsOf(m_pin);
  m_columns.version = m_version;
  m_receiver.columnsArrived(m_columns);
}

void RowTap::flush() {
  m_receiver.rowsArrived(std::move(m_batch));
  m_batch = nullptr;
  m_hasPassedRows = true;
}

}  // namespace kelvarin
