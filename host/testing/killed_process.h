// Processes that are killed just before one of the system calls that name files or remove names.
//
// The calls are defined here in place of the C library's, so one source file of a test program
// includes this. A linked shared library calls them as well.
// Threads: one.
#pragma once

#include <csignal>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelvarin::testing {

inline int callsToLive = -1;  // below 0: for ever

inline void countCall() {
  if (callsToLive == 0) {
    (void)::raise(SIGKILL);
  }
  callsToLive -= callsToLive > 0 ? 1 : 0;
}

// Does `work` in a process of its own, which is killed after so many calls; true when it was.
template <typename Work>
bool isKilledAfter(int calls, Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    callsToLive = calls;
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFSIGNALED(status);
}

}  // namespace kelvarin::testing

extern "C" int rename(const char* from, const char* to) noexcept {
  kelvarin::testing::countCall();
  return static_cast<int>(::syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}
extern "C" int unlink(const char* path) noexcept {
  kelvarin::testing::countCall();
  return static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to,
                      int flags) noexcept {
  kelvarin::testing::countCall();
  return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
extern "C" int fsync(int) {
  kelvarin::testing::countCall();
  return 0;  // a killed process loses nothing that is not on the disk
}
