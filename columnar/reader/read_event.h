// What comes next in a columnar file: rows, rows that are lost, or the end.
//
// Made by reader/block_unit.cpp and reader/table_recovery.cpp, judged by the reading action.
#pragma once

#include <cstdint>

#include "columnar/format/read_status.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

struct ReadEvent {
  enum class Kind {
    rows,       // `batch` has those from firstRow to lastRow, but for blocks that nobody wants
    corrupted,  // rows firstRow to lastRow cannot be read; what follows can
    truncated,  // the file ends inside the block at firstRow; nothing follows
    noMemory,   // for the block at firstRow; nothing follows
    end
  };

  Kind kind = Kind::end;
  std::uint64_t firstRow = 0;  // counted from 0
  std::uint64_t lastRow = 0;
  RowBatchPointer batch = nullptr;
  std::uint64_t blocks = 0;  // that begin in the batch
  // Why the rows are corrupted. At the end: `incomplete` while the writer is still at work.
  ReadStatus cause = ReadStatus::ok;

  bool isLast() const {
    return kind == Kind::truncated || kind == Kind::noMemory || kind == Kind::end;
  }
};

}  // namespace kelvarin
