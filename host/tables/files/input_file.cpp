#include "host/tables/files/input_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include <QFile>

#include "host/tables/files/messages.h"

namespace kelvarin {

InputFile::~InputFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

Status<QString> InputFile::open(const QString& path, std::function<bool()> isStopped) {
  m_path = path;
  m_isStopped = std::move(isStopped);
  const bool isStandardInput = path == QLatin1String("-");
  // A pipe is not waited for here, where nobody could end the wait, but in readNext().
  m_descriptor = isStandardInput ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)
                                 : ::open(QFile::encodeName(path).constData(),
                                          O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (m_descriptor < 0) {
    return Failure{table_messages::cannotRead(path, qt_error_string(errno))};
  }
  struct stat info{};
  if (::fstat(m_descriptor, &info) != 0) {
    return Failure{table_messages::cannotRead(path, qt_error_string(errno))};
  }
  if (S_ISDIR(info.st_mode)) {
    return Failure{table_messages::cannotRead(path, table_messages::isFolder())};
  }
  m_isRegular = S_ISREG(info.st_mode) && !isStandardInput;
  m_size = m_isRegular ? info.st_size : -1;
  if (m_isRegular) {
    ::posix_fadvise(m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  }
  return Done{};
}

Result<std::size_t, QString> InputFile::readAt(long long offset, char* bytes,
                                               std::size_t size) const {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got =
        ::pread(m_descriptor, bytes + done, size - done, offset + static_cast<long long>(done));
    if (got < 0 && errno != EINTR) {
      return Failure{table_messages::cannotRead(m_path, qt_error_string(errno))};
    }
    if (got == 0) {
      break;
    }
    done += got > 0 ? static_cast<std::size_t>(got) : 0;
  }
  return done;
}

Result<InputFile::Piece, QString> InputFile::readNext(char* bytes, std::size_t size,
                                                      std::size_t atLeast) const {
  std::size_t done = 0;
  while (done < size) {
    const bool isEnough = !m_isRegular && done >= atLeast;
    if (isEnough && !hasMoreSoon()) {
      return Piece{done, false};
    }
    if (!m_isRegular && !isEnough && !waitForBytes(kAnyTime)) {
      return Failure{table_messages::cannotRead(m_path, qt_error_string(ECANCELED))};
    }
    const ssize_t got = ::read(m_descriptor, bytes + done, size - done);
    if (got < 0 && errno != EINTR && errno != EAGAIN) {
      return Failure{table_messages::cannotRead(m_path, qt_error_string(errno))};
    }
    if (got == 0) {
      return Piece{done, true};
    }
    done += got > 0 ? static_cast<std::size_t>(got) : 0;
  }
  return Piece{done, false};
}

// A signal that ends a wait says nothing about the bytes: a read could block.
bool InputFile::hasMoreSoon() const {
  return waitForBytes(m_patience);
}

// A negative number of milliseconds is as long as it takes. False: there are none, or the run is
// being stopped.
bool InputFile::waitForBytes(int milliseconds) const {
  constexpr int kMillisecondsBetweenLooks = 20;
  pollfd entry{m_descriptor, POLLIN, 0};
  for (int left = milliseconds; left != 0 && !m_isStopped();) {
    const int wait =
        left < 0 ? kMillisecondsBetweenLooks : std::min(left, kMillisecondsBetweenLooks);
    if (::poll(&entry, 1, wait) > 0) {
      return true;
    }
    left -= left < 0 ? 0 : wait;
  }
  return false;
}

}  // namespace kelvarin
