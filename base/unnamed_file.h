// A file without a name, which vanishes with the process unless it is given one.
//
// What a process that is killed leaves behind is then nothing at all, instead of half a file under
// a temporary name. Not every file system has such files; the caller then makes one with a name.
// Used by: output files of the host, its temporary files for rows, the journal of columnar files.
// Threads: any.
// Errors: -1 or false, and errno says why; the caller does it another way.
#pragma once

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace kelvarin {

namespace unnamed_file_detail {

inline constexpr std::size_t kLinkPathSize = 32;

inline void makeLinkPath(int descriptor, char (&path)[kLinkPathSize]) {
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
}

}  // namespace unnamed_file_detail

// A descriptor for reading and writing, or -1 where the file system of `folder` has no such files
// or they could not be named later.
[[nodiscard]] inline int openUnnamedFile(const char* folder, mode_t mode = 0666) {
  const int descriptor = ::open(folder, O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
  if (descriptor < 0) {
    return -1;
  }
  char link[unnamed_file_detail::kLinkPathSize];
  unnamed_file_detail::makeLinkPath(descriptor, link);
  if (::access(link, F_OK) != 0) {
    ::close(descriptor);
    errno = EOPNOTSUPP;
    return -1;
  }
  return descriptor;
}

// False when something has that name already, which stays as it is, and after any other failure.
[[nodiscard]] inline bool nameUnnamedFile(int descriptor, const char* path) {
  char link[unnamed_file_detail::kLinkPathSize];
  unnamed_file_detail::makeLinkPath(descriptor, link);
  return ::linkat(AT_FDCWD, link, AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
}

}  // namespace kelvarin
