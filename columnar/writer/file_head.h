// The first bytes of a main file, while it is written and when it is finished.
//
// Used by ColumnarHDWriter.
// Layout: docs/gel-format.md, "Header".
#pragma once

#include <span>
#include <vector>

#include "columnar/writer/table_layout.h"

namespace kelvarin {

// Header, empty slot table and metadata block.
std::vector<unsigned char> provisionalHead(const TableLayout& layout);

// The numbers that are known at the end.
struct FileTotals {
  std::uint64_t rowCount = 0;
  std::uint32_t largestRecord = 0;           // with its head
  std::uint32_t largestDescriptorBlock = 0;  // uncompressed
};

// The sizes of a column set's columns for the slot table.
struct SetSlots {
  std::span<const std::uint32_t> largestChunks;
  std::span<const std::uint32_t> largestValues;
};

// Header and slot table, still with the complete flag 0. `sets` are those that have columns.
std::vector<unsigned char> finalHead(const TableLayout& layout, const FileTotals& totals,
                                     std::span<const SetSlots> sets);

}  // namespace kelvarin
