// How many rows each record batch of an Arrow file has, found without reading the batches.
//
// The footer says where the batches are, and the head of each how many rows it has. The library
// knows the numbers only when it has read the whole file.
// Used by: ipc_file.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "arrow/io/interfaces.h"

namespace kelvarin {

// Nothing where the file is not as it has to be, which the library explains.
std::optional<std::vector<std::int64_t>> rowsOfRecordBatches(arrow::io::RandomAccessFile& file);

}  // namespace kelvarin
