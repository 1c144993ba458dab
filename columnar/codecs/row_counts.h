// How many rows a chunk can be of, judged by its own bytes.
//
// Readers know the row count from the block's descriptor. Where that is lost, the encoded values of
// all columns together determine it: keys and plain numbers exactly, codes of few bits to within a
// few rows, values that are all the same not at all. The range always contains the true count;
// whether a count in it is possible shows when the values are decoded with it.
// Used by the recovery of tables. Threads: any.  Errors: an empty range; never throws.
#pragma once

#include <cstdint>

#include "base/byte_cursor.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

struct RowCounts {
  std::uint32_t fewest = 1;
  std::uint32_t most = 0;

  static constexpr RowCounts none() { return {1, 0}; }
  bool isEmpty() const { return fewest > most; }
};

// `encoded` are the uncompressed bytes of a chunk.
RowCounts possibleRowCounts(Bytes encoded, GelType type, RowCounts known);

}  // namespace kelvarin
