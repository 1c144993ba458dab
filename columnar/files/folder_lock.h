// Makes the programs that put columnar files into one folder, or take them away, do so one after
// the other.
//
// Held for the moments in which several files of a table change their names, are created or
// removed; never while rows are written. It ends with the process, however that ends.
// Used by: whoever creates, replaces or removes a table. Do not take it twice in one process.
// Threads: any.  Errors: a file system without such locks behaves as if nobody else were there.
#pragma once

#include <string>

namespace kelvarin {

class FolderLock {
 public:
  // The folder of `file`. Waits for others, but not for one that is stuck.
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
