// A column in the buffers of an Arrow array, and the buffers of texts.
//
// Used by: exported_batch.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <memory>
#include <vector>

#include "library/arrow_streams/exported_batch.h"

namespace kelvarin {

// Lives as long as the array that was made of it.
struct ExportedColumn {
  explicit ExportedColumn(std::size_t rows) : rowCount(rows) {}

  // The bits are made at the first null.
  void addNull(std::size_t row);
  // Null where no value is missing.
  const void* validity() const { return bits.empty() ? nullptr : bits.data(); }

  std::size_t rowCount;
  std::int64_t nullCount = 0;
  std::vector<unsigned char> bits;
  std::vector<const void*> buffers;
  std::shared_ptr<const void> owner;  // of the values
  std::shared_ptr<const void> made;   // what was made for the array
};

std::unique_ptr<ExportedColumn> exportedTexts(const RowBatch& batch, std::size_t index,
                                              TextFormat format, ArrayMemory& memory);

// The texts of each column take less than what offsets of 32 bits can count.
bool fitsSmallOffsets(const RowBatch& batch);

}  // namespace kelvarin
