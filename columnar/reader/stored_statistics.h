// Compares the decoded values of a block with the statistics in its descriptor.
//
// Used by verification, and by block_decoder.cpp to notice chunks of another table.
// Threads: any.
#pragma once

#include "columnar/reader/column_decoding.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

bool matchesStatistics(const GelFile& file, const unsigned char* descriptor, std::size_t column,
                       const DecodedColumn& values);

}  // namespace kelvarin
