// A lock on an open file that one process holds at a time and that ends with the process, however
// it ends.
//
// It is advisory: it shows those who ask that a writer is at work, and hinders nobody else. The
// lock belongs to the open file description, so two openings of one file inside a process exclude
// each other too, and closing the descriptor releases it. Asking never takes it.
// Used by: the writer of columnar files (held as long as a table is written), whoever opens or
// removes one, and the host's output files.
// Threads: any.
// Errors: a file system without such locks answers as if nobody held one.
#pragma once

#include <cerrno>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace kelvarin {

namespace file_lock_detail {

inline struct flock wholeFile() {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

}  // namespace file_lock_detail

// Takes the lock on a descriptor that is open for writing; false when somebody else holds it.
[[nodiscard]] inline bool takeFileLock(int descriptor) {
  struct flock lock = file_lock_detail::wholeFile();
  int result = 0;
  do {
    result = ::fcntl(descriptor, F_OFD_SETLK, &lock);
  } while (result != 0 && errno == EINTR);
  return result == 0 || (errno != EAGAIN && errno != EACCES);
}

// True while somebody else holds the lock. The descriptor may be open for reading only.
[[nodiscard]] inline bool isFileLockedElsewhere(int descriptor) {
  struct flock lock = file_lock_detail::wholeFile();
  return ::fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace kelvarin
