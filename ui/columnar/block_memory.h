// What a number of rows in a block means: how many blocks a table gets, and how much memory writing
// takes.
//
// Threads: any.
#pragma once

#include <cstdint>

#include "host/contract/pin_rows.h"

namespace kelvarin {

struct BlockMemory {
  std::uint64_t blocksOfAMillionRows = 0;
  std::uint64_t bytesOfBlock = 0;    // before it is encoded
  std::uint64_t bytesInWriting = 0;  // of the blocks that are filled and encoded at one time
};

// `rows` give the length of texts; null: a length is assumed. Nothing is known of the memory while
// there are no columns.
BlockMemory blockMemory(int rowsInBlock, const PinColumns& columns, const PinRows* rows);

}  // namespace kelvarin
