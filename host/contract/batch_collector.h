// Gathers single rows into batches.
//
// Memory is taken once for each batch.
// Used by: links whose consumer takes batches from a producer of rows, queues of rows, sources
// whose rows are typed in.
// Threads: one at a time.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/one_row.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

// Enough rows for what is done once a batch, and few enough that they stay in the processor's
// nearer caches.
struct BatchSize {
  std::size_t rows = 4096;
  std::size_t bytes = 256 * 1024;
};

class KELVARIN_CORE BatchCollector {
 public:
  BatchCollector(std::vector<MetaTypeColumn> types, BatchSize size);
  ~BatchCollector();
  BatchCollector(BatchCollector&&) noexcept;
  BatchCollector& operator=(BatchCollector&&) noexcept;

  void append(const OneRow& row) { append(row.getAllColForRead()); }
  // One pointer a column; a null pointer is a missing value.
  void append(const unsigned char* const* values);
  bool isFull() const { return m_rowCount >= m_size.rows || m_byteCount >= m_size.bytes; }
  bool isEmpty() const { return m_rowCount == 0; }
  std::size_t rowCount() const { return m_rowCount; }
  // The rows so far; the next batch begins. Never null.
  RowBatchPointer take();

 private:
  struct Column;

  void begin();

  std::vector<MetaTypeColumn> m_types;
  BatchSize m_size;
  std::vector<Column> m_columns;
  std::size_t m_rowCount = 0;
  std::size_t m_byteCount = 0;
};

KELVARIN_CORE std::vector<MetaTypeColumn> typesOf(const OneRow& columns);

}  // namespace kelvarin
