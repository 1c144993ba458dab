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

QString systemReason(int error) {
  return QString::fromLocal8Bit(std::strerror(error));
}

Status<QString> statusOf(int error) {
  return error == 0 ? Status<QString>(Done{}) : Failure{systemReason(error)};
}

bool isFullDisk(int error) {
  return error == ENOSPC || error == EDQUOT;
}

// Whether the descriptor is still that of the file which bears the name.
bool bearsName(int descriptor, const char* name) {
  struct stat opened{};
  struct stat named{};
  return ::fstat(descriptor, &opened) == 0 && ::lstat(name, &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// -1 and errno, EBUSY when another process writes the file.
int openAndLock(const char* name) {
  while (true) {
    const int descriptor =
        ::open(name, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0666);
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

GrowingFile::GrowingFile(AskAboutFullDisk ask)
    : m_ask(std::move(ask)), m_file([this](std::size_t missingBytes) {
        return m_ask(m_path, static_cast<int>(std::min<std::size_t>(missingBytes, INT_MAX)));
      }) {}

template <typename Open>
Status<QString> GrowingFile::openWith(const QString& path, Open openOnce) {
  close();
  m_path = path;
  m_size = 0;
  const QByteArray name = QFile::encodeName(path);
  while (true) {
    const int descriptor = openOnce(name.constData());
    const int error = errno;
    if (descriptor >= 0) {
      m_file.open(descriptor);
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
  return isOpen() ? ::fcntl(m_file.descriptor(), F_DUPFD_CLOEXEC, 0) : -1;
}

Status<QString> GrowingFile::append(Bytes bytes) {
  const auto status = writeAt(m_size, bytes);
  if (status) {
    m_size += bytes.size();
    m_file.beginStoring(m_size);
  }
  return status;
}

Status<QString> GrowingFile::writeAt(std::uint64_t offset, Bytes bytes) {
  return statusOf(m_file.writeAt(offset, bytes.data(), bytes.size()));
}

Status<QString> GrowingFile::sync() const {
  return statusOf(m_file.sync());
}

void GrowingFile::discard() {
  if (isOpen()) {
    QFile::remove(m_path);  // while its lock keeps others away
    close();
  }
}

}  // namespace kelvarin
