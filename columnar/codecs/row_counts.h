// Which row counts a chunk can have, judged by its own bytes.
//
// Readers know the row count from the block's descriptor. Where that is lost, the encoded values of
// all columns together determine it: plain numbers exactly, keys and codes of few bits within a
// range, equal values not at all. The range always contains the true count; decoding shows whether
// a count in it fits.
// Used by the recovery of tables.
// Threads: any.
// Errors: an empty range; never throws.
#pragma once

#include <cstdint>

#include "base/byte_cursor.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

struct RowCounts {
  std::uint32_t min = 1;
  std::uint32_t max = 0;

  static constexpr RowCounts none() { return {1, 0}; }
  bool isEmpty() const { return min > max; }
};

// `encoded` are the uncompressed bytes of a chunk.
RowCounts possibleRowCounts(Bytes encoded, GelType type, RowCounts known);

}  // namespace kelvarin
