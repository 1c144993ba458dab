// Rows as one run of bytes, column by column, which lie in memory or on the disk alike.
//
// Layout: for a column of numbers or keys its values, one after the other, a missing one as its
// null pattern; for a column of texts a 4-byte start for each row, counted from the column's first
// byte, 0xFFFFFFFF for a missing one, then the values as rows hold them.
// Used by: row_store.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/contract/pin_rows.h"

namespace kelvarin {

struct PackedRows {
  std::vector<unsigned char> bytes;
  std::vector<std::size_t> starts;  // of the columns in `bytes`, and the end of the last one
};

PackedRows packRows(const PinRows& rows);

// A value in the bytes of its column; null where a text is missing.
const unsigned char* packedValue(MetaTypeColumn type, const unsigned char* column, std::size_t row);

}  // namespace kelvarin
