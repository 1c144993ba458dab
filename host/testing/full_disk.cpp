#include "host/testing/full_disk.h"

#include <atomic>
#include <cerrno>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr long long kUnlimited = -1;
std::atomic<long long> spaceLeft{kUnlimited};
std::atomic<long long> refusalCount{0};

bool isRegularFile(int file) {
  struct stat status;
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

// How many of the bytes the file takes; -1 with errno set when it takes none.
ssize_t granted(int file, size_t bytes) {
  long long left = spaceLeft.load();
  if (left == kUnlimited || bytes == 0 || !isRegularFile(file)) {
    return static_cast<ssize_t>(bytes);
  }
  long long taken = 0;
  do {
    taken = left < static_cast<long long>(bytes) ? left : static_cast<long long>(bytes);
  } while (!spaceLeft.compare_exchange_weak(left, left - taken));
  if (taken == 0) {
    ++refusalCount;
    errno = ENOSPC;
    return -1;
  }
  return static_cast<ssize_t>(taken);
}

}  // namespace

// Visible to the shared libraries, so that their calls come here.
#pragma GCC visibility push(default)
extern "C" {

ssize_t write(int file, const void* bytes, size_t size) {
  const ssize_t taken = granted(file, size);
  return taken < 0 ? -1 : syscall(SYS_write, file, bytes, taken);
}

ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset) {
  const ssize_t taken = granted(file, size);
  return taken < 0 ? -1 : syscall(SYS_pwrite64, file, bytes, taken, offset);
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  return pwrite64(file, bytes, size, offset);
}

ssize_t writev(int file, const iovec* parts, int count) {
  for (int i = 0; i < count; ++i) {
    if (parts[i].iov_len > 0) {
      return write(file, parts[i].iov_base, parts[i].iov_len);
    }
  }
  return 0;
}
}
#pragma GCC visibility pop

namespace kelvarin::testing {

FullDisk::FullDisk(long long bytes) {
  refusalCount = 0;
  spaceLeft = bytes;
}

FullDisk::~FullDisk() {
  spaceLeft = kUnlimited;
}

void FullDisk::freeBytes(long long bytes) {
  spaceLeft += bytes;
}
long long FullDisk::bytesLeft() const {
  return spaceLeft;
}
long long FullDisk::refusals() const {
  return refusalCount;
}

}  // namespace kelvarin::testing
