#include "columnar/writer/growing_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include "base/file_lock.h"

namespace kelvarin {

namespace {

// Data goes to the disk in pieces of this size while the file grows, so that the end need not wait
// for all of it.
constexpr std::uint64_t kWriteBackStep = 8 << 20;

QString systemReason(int error) {
  return QString::fromLocal8Bit(std::strerror(error));
}

bool isFullDisk(int error) {
  return error == ENOSPC || error == EDQUOT;
}

// Whether the descriptor is still that of the file which bears the name.
bool bearsName(int descriptor, const char* name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(descriptor, &opened) == 0 && ::lstat(name, &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// -1 and errno, EBUSY when another process writes the file.
int openAndLock(const char* name) {
  while (true) {
    const int descriptor = ::open(
        name, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0666);
    if (descriptor < 0) {
      return -1;
    }
    int error = takeFileLock(descriptor) ? 0 : EBUSY;
    if (error == 0 && !bearsName(descriptor, name)) {
      ::close(descriptor);  // it was replaced meanwhile
      continue;
    }
    if (error == 0 && ::ftruncate(descriptor, 0) != 0) {
      error = errno;
    }
    if (error == 0) {
      return descriptor;
    }
    ::close(descriptor);
    errno = error;
    return -1;
  }
}

// The same; also a side file can be another table's that is being written.
int createAndLock(const char* name) {
  const int previous = ::open(name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (previous >= 0) {
    const bool isBusy = isFileLockedElsewhere(previous);
    ::close(previous);
    if (isBusy) {
      errno = EBUSY;
      return -1;
    }
  }
  ::unlink(name);
  const int descriptor = ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor >= 0 && !takeFileLock(descriptor)) {
    ::close(descriptor);
    errno = EBUSY;
    return -1;
  }
  return descriptor;
}

}  // namespace

template <typename Open>
Status<QString> GrowingFile::openWith(const QString& path, Open openOnce) {
  close();
  m_path = path;
  m_size = m_writtenBack = 0;
  const QByteArray name = QFile::encodeName(path);
  while (true) {
    m_descriptor = openOnce(name.constData());
    const int error = errno;
    if (m_descriptor >= 0) {
      return Done{};
    }
    if (error != EINTR && !(isFullDisk(error) && m_ask(m_path, 1))) {
      return Failure{systemReason(error)};
    }
  }
}

Status<QString> GrowingFile::openLocked(const QString& path) {
  return openWith(path, openAndLock);
}

Status<QString> GrowingFile::openNew(const QString& path) {
  return openWith(path, createAndLock);
}

int GrowingFile::duplicateDescriptor() const {
  return isOpen() ? ::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0) : -1;
}

Status<QString> GrowingFile::append(Bytes bytes) {
  const auto status = writeAt(m_size, bytes);
  if (status) {
    m_size += bytes.size();
    beginWriteBack();
  }
  return status;
}

Status<QString> GrowingFile::writeAt(std::uint64_t offset, Bytes bytes) {
  while (!bytes.empty()) {
    const ssize_t taken =
        ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (taken > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(taken));
      offset += static_cast<std::uint64_t>(taken);
      continue;
    }
    const int error = taken == 0 ? ENOSPC : errno;
    if (error == EINTR) {
      continue;
    }
    const auto missing = static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX));
    if (!isFullDisk(error) || !m_ask(m_path, missing)) {
      return Failure{systemReason(error)};
    }
  }
  return Done{};
}

Status<QString> GrowingFile::sync() const {
  // Some file systems and devices keep nothing that could be synchronized.
  if (::fdatasync(m_descriptor) != 0 && errno != EINVAL && errno != EROFS) {
    return Failure{systemReason(errno)};
  }
  return Done{};
}

void GrowingFile::discard() {
  if (isOpen()) {
    QFile::remove(m_path);  // while its lock keeps others away
    close();
  }
}

void GrowingFile::close() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}

void GrowingFile::beginWriteBack() {
  if (m_size - m_writtenBack < kWriteBackStep) {
    return;
  }
  // Only a hint: a failure shows at sync().
  (void)::sync_file_range(m_descriptor, static_cast<off_t>(m_writtenBack),
                          static_cast<off_t>(m_size - m_writtenBack), SYNC_FILE_RANGE_WRITE);
  m_writtenBack = m_size;
}

}  // namespace kelvarin
