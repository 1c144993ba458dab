// The decoded columns of one block, and the batches of its rows.
//
// A small block is one batch, and a large one is cut into several, which share its memory.
// Used by block_decoding.h and table_recovery.h.
// Threads: different columns may be set at the same time; batches are made on any thread once all
// columns are set.
// Errors: throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <vector>

#include "columnar/reader/column_decoding.h"

namespace kelvarin {

// Into how many batches a block of so many rows and columns is cut. `isDirect`: its values may be
// decoded to ValueTargets.
std::size_t batchesOfBlock(std::uint64_t rows, std::size_t columns, bool isDirect);

class BlockColumns {
 public:
  BlockColumns(const std::vector<MetaTypeColumn>& types, std::uint64_t rows, bool isDirect = false);

  // Whole columns, or a single value for all rows.
  void set(std::size_t column, DecodedColumn values);

  std::uint64_t rowCount() const { return m_rowCount; }
  std::size_t batchCount() const;
  RowBatchPointer batch(std::size_t index) const;
  // The rows of the block before those of the batch.
  std::uint64_t rowsBefore(std::size_t batch) const { return batch * m_rowsInBatch; }

 private:
  struct Column {
    std::shared_ptr<const DecodedColumn> values;
    bool isRepeated = false;  // the values for one batch are those of every batch
  };

  const std::vector<MetaTypeColumn>& m_types;
  const std::uint64_t m_rowCount;
  const std::uint64_t m_rowsInBatch;
  std::vector<Column> m_columns;
};

}  // namespace kelvarin
