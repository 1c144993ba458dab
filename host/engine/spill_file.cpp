#include "host/engine/spill_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "base/unnamed_file.h"
#include "host/contract/main_ui.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

bool isDiskFull(int error) {
  return error == ENOSPC || error == EDQUOT;
}

}  // namespace

SpillFile::SpillFile(const QString& folder)
    : m_folder(folder.isEmpty() ? QDir::tempPath() : folder) {}

SpillFile::~SpillFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

bool SpillFile::open() {
  if (m_descriptor >= 0) {
    return true;
  }
  m_descriptor = openUnnamedFile(QFile::encodeName(m_folder).constData(), 0600);
  if (m_descriptor >= 0) {
    return true;
  }
  QByteArray path =
      QFile::encodeName(QDir(m_folder).filePath(QStringLiteral("kelvarin-rows-XXXXXX")));
  m_descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (m_descriptor < 0) {
    return fail(engine_messages::cannotMakeTemporaryFile(m_folder, qt_error_string(errno)));
  }
  ::unlink(path.constData());
  return true;
}

bool SpillFile::append(const unsigned char* bytes, std::size_t size, long long* offset) {
  if (!open()) {
    return false;
  }
  *offset = m_end;
  for (std::size_t done = 0; done < size;) {
    const ssize_t written = ::pwrite(m_descriptor, bytes + done, size - done,
                                     static_cast<off_t>(m_end) + static_cast<off_t>(done));
    if (written > 0) {
      done += static_cast<std::size_t>(written);
      continue;
    }
    const int error = written == 0 ? ENOSPC : errno;
    if (error == EINTR) {
      continue;
    }
    const auto missing = static_cast<int>(std::min<std::size_t>(size - done, INT_MAX));
    if (!isDiskFull(error) || !MainUI::displayOutOfDiskSpace(m_folder, missing, true)) {
      return fail(engine_messages::cannotWriteTemporaryFile(m_folder, qt_error_string(error)));
    }
  }
  m_end += static_cast<long long>(size);
  return true;
}

bool SpillFile::read(long long offset, unsigned char* bytes, std::size_t size) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t count = ::pread(m_descriptor, bytes + done, size - done,
                                  static_cast<off_t>(offset) + static_cast<off_t>(done));
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      const int error = count == 0 ? EIO : errno;
      return fail(engine_messages::cannotReadTemporaryFile(m_folder, qt_error_string(error)));
    }
  }
  return true;
}

void SpillFile::forget(long long offset, std::size_t size) {
#ifdef FALLOC_FL_PUNCH_HOLE
  // A file system without holes keeps the space until the end of the run; nothing depends on it.
  (void)::fallocate(m_descriptor, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
                    static_cast<off_t>(offset), static_cast<off_t>(size));
#else
  (void)offset;
  (void)size;
#endif
}

void SpillFile::restart() {
  m_end = 0;
  if (m_descriptor >= 0 && ::ftruncate(m_descriptor, 0) != 0) {
    m_errorText = engine_messages::cannotWriteTemporaryFile(m_folder, qt_error_string(errno));
  }
}

bool SpillFile::fail(const QString& text) {
  m_errorText = text;
  return false;
}

}  // namespace kelvarin
