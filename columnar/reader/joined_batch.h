// The rows of several small batches in one.
//
// Used by block_unit.cpp for files of small blocks.
// Threads: any.
#pragma once

#include <span>

#include "host/contract/row_batch.h"

namespace kelvarin {

// The batches have the same columns and no selection, and their texts of one column take less than
// 4 GiB. There is at least one.
RowBatchPointer joined(std::span<const RowBatchPointer> batches);

}  // namespace kelvarin
