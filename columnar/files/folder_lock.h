// Serializes the processes that create, rename or remove columnar files in one folder.
//
// It is held while several files of a table are created, renamed or removed, never while rows are
// written, and ends with the process. A process must not take it twice.
// Used wherever a table is created, replaced or removed.
// Threads: any.
// Errors: a file system without such locks behaves as if there were no other process.
#pragma once

#include <string>

namespace kelvarin {

class FolderLock {
 public:
  // Locks the folder of `file`. Waits for other processes, but not for one that is stuck.
  explicit FolderLock(const std::string& file);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // False: another process has held it for seconds.
  bool isHeld() const { return m_isHeld; }

 private:
  int m_descriptor = -1;
  bool m_isHeld = false;
};

}  // namespace kelvarin
