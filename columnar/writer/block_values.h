// The buffer in which one column set's block is filled, column by column.
//
// Threads: the filling thread or the worker, whoever has it from a queue of ColumnSetWorker.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "columnar/codecs/text_encoding.h"
#include "columnar/format/metadata_block.h"

namespace kelvarin {

// The values of one column; members that its type does not need stay empty.
struct ColumnValues {
  std::unique_ptr<std::uint32_t[]> keys;  // of texts the lengths
  std::unique_ptr<std::uint64_t[]> numbers;
  ByteBuffer bytes;

  ColumnValues(GelType type, std::size_t rows) {
    if (type == GelType::number) {
      numbers = std::make_unique_for_overwrite<std::uint64_t[]>(rows);
    } else {
      keys = std::make_unique_for_overwrite<std::uint32_t[]>(rows);
    }
  }
};

struct BlockValues {
  std::vector<ColumnValues> columns;  // of the set, in its order
  std::uint32_t rows = 0;
};

}  // namespace kelvarin
