// The texts of a batch in the buffers of an Arrow array.
//
// Used by: exported_batch.cpp, whole_columns.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <memory>

#include "library/arrow_streams/exported_batch.h"

namespace kelvarin {

std::unique_ptr<ExportedColumn> exportedTexts(const RowBatch& batch, std::size_t index,
                                              TextFormat format, ArrayMemory& memory);

// Of all rows, without their counts.
std::size_t sizeOfTexts(const RowBatch& batch, const BatchColumn& column);

// Writes the texts one behind another, and where each ends, from 0 on. Null ones have no bytes.
template <typename Offset>
void packTexts(const RowBatch& batch, const BatchColumn& column, char* bytes, Offset* ends,
               NullBits& nulls) {
  std::size_t size = 0;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    const unsigned char* text = column.text(stored);
    if (isNullText(text)) {
      nulls.add(row, batch.rowCount());
    } else {
      const std::string_view all = textFromBytes(text);
      all.copy(bytes + size, all.size());
      size += all.size();
    }
    ends[row] = static_cast<Offset>(size);
  });
}

// The texts of each column take less than what offsets of 32 bits can count.
bool fitsSmallOffsets(const RowBatch& batch);

}  // namespace kelvarin
