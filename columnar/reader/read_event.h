// What comes next in a columnar file: a block of rows, rows that are lost, or the end.
//
// Made by reader/block_reader.cpp, judged by the reading action.
#pragma once

#include <cstdint>
#include <memory>

#include "columnar/format/read_status.h"
#include "columnar/reader/decoded_block.h"

namespace kelvarin {

struct ReadEvent {
  enum class Kind {
    block,      // `block` has rows
    corrupted,  // rows firstRow to lastRow cannot be read; what follows can
    truncated,  // the file ends inside the block at firstRow; nothing follows
    noMemory,   // for the block at firstRow; nothing follows
    end
  };

  Kind kind = Kind::end;
  std::uint64_t firstRow = 0;  // counted from 0
  std::uint64_t lastRow = 0;
  std::unique_ptr<DecodedBlock> block = nullptr;
  // Why the rows are corrupted. At the end: `incomplete` while the writer is still at work.
  ReadStatus cause = ReadStatus::ok;

  bool isLast() const {
    return kind == Kind::truncated || kind == Kind::noMemory || kind == Kind::end;
  }
};

}  // namespace kelvarin
