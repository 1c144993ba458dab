#include "base/writable_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <numeric>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/uio.h>
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

// All but the first `done` bytes, as far as one call takes them.
ssize_t writePieces(int descriptor, std::span<const std::string_view> pieces, std::size_t done) {
  std::array<iovec, 16> rests;
  std::size_t count = 0;
  for (const std::string_view piece : pieces) {
    const std::size_t skipped = std::min(done, piece.size());
    done -= skipped;
    if (skipped < piece.size() && count < rests.size()) {
      rests[count++] = {const_cast<char*>(piece.data()) + skipped, piece.size() - skipped};
    }
  }
  return ::writev(descriptor, rests.data(), static_cast<int>(count));
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

// `writeOnce` writes some of the bytes behind those that are done already.
template <typename WriteOnce>
int WritableFile::writeAll(std::size_t size, WriteOnce writeOnce) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t written = writeOnce(done);
    if (written > 0) {
      done += static_cast<std::size_t>(written);
      continue;
    }
    const int error = written == 0 ? ENOSPC : errno;
    if (!mayTryAgain(error, size - done)) {
      return error;
    }
  }
  return 0;
}

int WritableFile::write(const void* bytes, std::size_t size) {
  const char* begin = static_cast<const char*>(bytes);
  return writeAll(size, [=, this](std::size_t done) {
    return m_kind == Kind::file ? ::write(m_descriptor, begin + done, size - done)
                                : writeToStream(m_descriptor, begin + done, size - done);
  });
}

int WritableFile::write(std::span<const std::string_view> pieces) {
  const std::size_t size =
      std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                      [](std::size_t sum, std::string_view piece) { return sum + piece.size(); });
  return writeAll(size, [&](std::size_t done) { return writePieces(m_descriptor, pieces, done); });
}

int WritableFile::writeAt(std::uint64_t offset, const void* bytes, std::size_t size) {
  const char* begin = static_cast<const char*>(bytes);
  return writeAll(size, [=, this](std::size_t done) {
    return ::pwrite(m_descriptor, begin + done, size - done, static_cast<off_t>(offset + done));
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
