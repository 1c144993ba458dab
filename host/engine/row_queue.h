// Rows that wait for their reader, first in, first out, with their bytes copied.
//
// Rows lie one after another in batches: per column the bytes of column_bytes.h, a missing value as
// its type's missing-value bytes. Batches beyond the memory limit lie in a temporary file until
// they are read. The rows of the batch that is being read may be looked at ahead where they all
// have the same size: those of numbers and keys alone.
// Used by: row_links.cpp.
// Threads: one.
// Errors: false from push() and pop(), and errorText() says why.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "host/contract/one_row.h"
#include "host/contract/rows_in_hand.h"
#include "host/engine/execution_options.h"
#include "host/engine/spill_file.h"

namespace kelvarin {

class RowQueue final : public RowsInHand {
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
  // The row that pop() gave last and those behind it in its batch.
  RowsAhead rowsAhead() const;
  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* room) const override;
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* room) const override;
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
  template <typename Value>
  const Value* valuesAhead(int column, std::size_t first, std::size_t count, Value* room) const;
  void recycle(Batch& batch);

  std::size_t m_memoryLimit;
  std::vector<MetaTypeColumn> m_columns;
  std::size_t m_rowSize = 0;  // of every row; 0 where rows differ
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
