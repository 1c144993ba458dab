// While one lives, the regular files of this process take so many more bytes and then there is no
// space left.
//
// Stands in for the C library's writing operations, so that it holds for every library that writes
// through them.
// Threads: any.
#pragma once

namespace kelvarin::testing {

class FullDisk {
 public:
  explicit FullDisk(long long bytesLeft);
  ~FullDisk();
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

  // Somebody has deleted so much.
  void freeBytes(long long bytes);
  long long bytesLeft() const;
  // How many writes have failed so far.
  long long refusals() const;
};

}  // namespace kelvarin::testing
