// Compares the decoded values of a block with the statistics in its descriptor.
//
// Used by verification, and by block_reader.cpp to notice chunks of another table.
// Threads: any.
#pragma once

#include "columnar/reader/block_scan.h"
#include "columnar/reader/decoded_block.h"

namespace kelvarin {

bool matchesStatistics(const GelFile& file, const BlockInfo& block, std::size_t column,
                       const DecodedColumn& values);

}  // namespace kelvarin
