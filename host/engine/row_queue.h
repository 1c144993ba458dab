// Rows that wait for their reader, first in, first out, with their bytes copied.
//
// Rows lie one after another in batches: per column the bytes of column_bytes.h, a missing value as
// its type's missing-value bytes. Batches beyond the memory limit lie in a temporary file until
// they are read.
// Used by: row_links.cpp.
// Threads: one.
// Errors: false from push() and pop(), and errorText() says why.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "host/contract/one_row.h"
#include "host/engine/execution_options.h"
#include "host/engine/spill_file.h"

namespace kelvarin {

class RowQueue {
 public:
  explicit RowQueue(const ExecutionOptions& options);

  bool isEmpty() const { return m_rowCount == 0; }
  long long rowCount() const { return m_rowCount; }
  // Bytes of all rows that wait, in memory and on disk.
  long long byteCount() const { return m_byteCount; }

  // All rows of a queue have the columns of its first.
  [[nodiscard]] bool push(const OneRow& row);
  // Points `values` at the oldest row, which stays valid until the next pop() or clear(). The queue
  // is not empty.
  [[nodiscard]] bool pop(unsigned char** values);
  // Drops all rows and gives their memory and disk space back.
  void clear();

  const QString& errorText() const { return m_spill.errorText(); }

 private:
  struct Batch {
    std::unique_ptr<unsigned char[]> bytes;  // null while the rows are in the file
    std::size_t capacity = 0;
    std::size_t used = 0;
    long long rowCount = 0;
    long long fileOffset = -1;
  };

  std::size_t sizeOf(const OneRow& row) const;
  void copyInto(Batch& batch, const OneRow& row) const;
  bool startBatch(std::size_t rowSize);
  void giveRoom(Batch& batch, std::size_t size);
  bool spill(Batch& batch);
  bool startReading();
  void recycle(Batch& batch);

  std::size_t m_memoryLimit;
  std::vector<MetaTypeColumn> m_columns;
  std::deque<Batch>
      m_batches;  // the oldest, which is read, in front; the one being filled at the back
  Batch m_reading;
  std::size_t m_readPosition = 0;
  long long m_rowsLeftInReading = 0;
  std::unique_ptr<unsigned char[]> m_spareBytes;  // kBatchBytes of them, for the next batch
  std::size_t m_bytesInMemory = 0;
  int m_batchesOnDisk = 0;
  long long m_rowCount = 0;
  long long m_byteCount = 0;
  SpillFile m_spill;
};

}  // namespace kelvarin
