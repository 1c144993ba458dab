// Whether the decoded values of a block agree with the summary that its descriptor has of them.
//
// Used by verification and, where a chunk alone does not tell how it was encoded, by
// block_reader.cpp. Threads: any.
#pragma once

#include "columnar/reader/block_scan.h"
#include "columnar/reader/decoded_block.h"

namespace kelvarin {

bool hasItsSummary(const GelFile& file, const BlockInfo& block, std::size_t column,
                   const DecodedColumn& values);

}  // namespace kelvarin
