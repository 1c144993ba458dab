#include "columnar/writer/growing_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include <QFile>

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

}  // namespace

Status<QString> GrowingFile::open(const QString& path) {
  close();
  m_path = path;
  m_size = m_writtenBack = 0;
  const QByteArray name = QFile::encodeName(path);
  while (true) {
    m_descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const int error = errno;
    if (m_descriptor >= 0) {
      return Done{};
    }
    if (error != EINTR && !(isFullDisk(error) && m_ask(m_path, 1))) {
      return Failure{systemReason(error)};
    }
  }
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
    close();
    QFile::remove(m_path);
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
