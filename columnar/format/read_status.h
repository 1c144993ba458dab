// The outcome of reading a part of a columnar file. The reading action decides what follows from
// it.
#pragma once

namespace kelvarin {

enum class ReadStatus {
  ok,
  incomplete,  // the file was not finished: its complete flag is 0
  truncated,   // fewer bytes than their recorded length
  wrongChecksum,
  corrupted,     // the checksum is right, but the bytes make no sense
  beyondLimits,  // they would take more memory than the files justify
  foreign,       // values other than those that the main file describes
  unreadable,    // not a columnar file: too short, or another magic number
};

}  // namespace kelvarin
