// How reading a part of a columnar file went. What follows from it is decided by the reading action.
#pragma once

namespace kelvarin {

enum class ReadStatus {
  ok,
  incomplete,  // the file was not finished: its complete flag is 0
  truncated,   // fewer bytes than their recorded length
  corrupted,   // the checksum differs, or the bytes make no sense
  unreadable,  // not a columnar file: too short, or another magic number
};

}  // namespace kelvarin
