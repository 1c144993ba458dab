#include "host/engine/row_tap.h"

#include "host/engine/run_results.h"

namespace kelvarin {

void RowTap::receive(const OneRow& row) {
  if (isFull()) {
    return;
  }
  passColumns();
  if (m_batch == nullptr) {
    m_batch = std::make_shared<PinRows>(m_columns, m_rowCount);
  }
  m_batch->append(row);
  ++m_rowCount;
  if (isFull() || m_batch->rowCount() == kRowsInBatch || m_batch->byteCount() >= kBytesInBatch) {
    flush();
  }
}

void RowTap::flushWhenDue() {
  if (m_batch != nullptr && Clock::now() - m_lastFlush > kLongestWait) {
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
  m_lastFlush = Clock::now();
}

}  // namespace kelvarin
