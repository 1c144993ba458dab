#include "base/writable_file.h"

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelvarin {

namespace {

// So many bytes at a time begin their way to the disk.
constexpr std::uint64_t kBytesToStore = 8 << 20;

// A write to a pipe that nobody reads returns an error instead of ending the process.
class PipeSignalBlocked {
 public:
  PipeSignalBlocked() {
    sigemptyset(&m_pipeSignal);
    sigaddset(&m_pipeSignal, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    m_wasPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &m_pipeSignal, &m_previous);
  }
  // Keeps errno, which is that of the write.
  ~PipeSignalBlocked() {
    const int error = errno;
    if (!m_wasPending) {
      const timespec noWait{};
      while (sigtimedwait(&m_pipeSignal, nullptr, &noWait) == -1 && errno == EINTR) {
      }
    }
    pthread_sigmask(SIG_SETMASK, &m_previous, nullptr);
    errno = error;
  }
  PipeSignalBlocked(const PipeSignalBlocked&) = delete;
  PipeSignalBlocked& operator=(const PipeSignalBlocked&) = delete;

 private:
  sigset_t m_pipeSignal;
  sigset_t m_previous;
  bool m_wasPending;
};

ssize_t writeToStream(int descriptor, const char* bytes, std::size_t size) {
  const PipeSignalBlocked blocked;
  const ssize_t written = ::write(descriptor, bytes, size);
  if (written < 0 && errno == EAGAIN) {
    constexpr int kMilliseconds = 1000;
    pollfd entry{descriptor, POLLOUT, 0};
    ::poll(&entry, 1, kMilliseconds);
    errno = EAGAIN;
  }
  return written;
}

// A device that takes no more has no disk on which space could be made.
bool isOnDisk(int descriptor) {
  struct stat written{};
  return ::fstat(descriptor, &written) == 0 && S_ISREG(written.st_mode);
}

}  // namespace

void WritableFile::open(int descriptor, Kind kind) {
  (void)close();
  m_descriptor = descriptor;
  m_kind = kind;
  m_bytesBeingStored = 0;
}

bool WritableFile::mayTryAgain(int error, std::size_t missingBytes) const {
  if (error == EINTR || error == EAGAIN) {
    return true;
  }
  const bool isFullDisk = error == ENOSPC || error == EDQUOT;
  return isFullDisk && isOnDisk(m_descriptor) && m_ask(missingBytes);
}

template <typename WriteOnce>
int WritableFile::writeAll(const void* bytes, std::size_t size, WriteOnce writeOnce) {
  const char* next = static_cast<const char*>(bytes);
  while (size > 0) {
    const ssize_t written = writeOnce(next, size);
    if (written > 0) {
      next += written;
      size -= static_cast<std::size_t>(written);
      continue;
    }
    const int error = written == 0 ? ENOSPC : errno;
    if (!mayTryAgain(error, size)) {
      return error;
    }
  }
  return 0;
}

int WritableFile::write(const void* bytes, std::size_t size) {
  return writeAll(bytes, size, [this](const char* next, std::size_t rest) {
    return m_kind == Kind::file ? ::write(m_descriptor, next, rest)
                                : writeToStream(m_descriptor, next, rest);
  });
}

int WritableFile::writeAt(std::uint64_t offset, const void* bytes, std::size_t size) {
  const std::uint64_t end = offset + size;
  return writeAll(bytes, size, [this, end](const char* next, std::size_t rest) {
    return ::pwrite(m_descriptor, next, rest, static_cast<off_t>(end - rest));
  });
}

void WritableFile::beginStoring(std::uint64_t size) {
  const std::uint64_t waiting = size - m_bytesBeingStored;
  if (waiting < kBytesToStore || m_kind != Kind::file) {
    return;
  }
  (void)::sync_file_range(m_descriptor, static_cast<off_t>(m_bytesBeingStored),
                          static_cast<off_t>(waiting), SYNC_FILE_RANGE_WRITE);
  m_bytesBeingStored = size;
}

int WritableFile::sync() const {
  const bool isStored = ::fdatasync(m_descriptor) == 0 || errno == EINVAL || errno == EROFS;
  return isStored ? 0 : errno;
}

int WritableFile::close() {
  const int descriptor = std::exchange(m_descriptor, -1);
  return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR ? 0 : errno;
}

}  // namespace kelvarin
