// The rows of a batch one by one: what those see who ask a pin for rows.
//
// Used by: the links of the engine, and sinks that look at every row.
// Threads: one at a time.
#pragma once

#include <utility>

#include "host/contract/row_batch.h"

namespace kelvarin {

class BatchRows {
 public:
  void start(RowBatchPointer batch) {
    m_batch = std::move(batch);
    m_next = 0;
  }
  // Forgets the batch; rows that were shown are gone.
  void clear() { start(nullptr); }

  const RowBatchPointer& batch() const { return m_batch; }
  // Of the rows of the batch, how many were taken.
  std::size_t rowsTaken() const { return m_next; }
  std::size_t rowsLeft() const { return m_batch == nullptr ? 0 : m_batch->rowCount() - m_next; }
  void skip(std::size_t count) { m_next += count; }

  // Points `values` at the next row's values; there is one. They stay as long as the batch.
  void take(unsigned char** values) {
    const std::size_t stored = m_batch->storedRow(m_next++);
    for (const BatchColumn& column : m_batch->columns()) {
      // Rows are not const, for actions that were written before; nobody writes to them.
      *values++ = const_cast<unsigned char*>(column.value(stored));
    }
  }

 private:
  RowBatchPointer m_batch;
  std::size_t m_next = 0;
};

}  // namespace kelvarin
