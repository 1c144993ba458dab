// The outcome of reading a part of a columnar file. The reading action decides what follows from
// it.
#pragma once

namespace kelvarin {

enum class ReadStatus {
  ok,
  incomplete,  // the file ends where its writer is still writing
  truncated,   // fewer bytes than their recorded length
  wrongChecksum,
  corrupted,     // the checksum is right, but the bytes make no sense
  beyondLimits,  // they would take more memory than the files justify
  foreign,       // values other than those that the main file describes
};

}  // namespace kelvarin
