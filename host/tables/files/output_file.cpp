#include "host/tables/files/output_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>

#include <QFile>

#include "base/file_lock.h"
#include "base/unnamed_file.h"
#include "host/contract/main_ui.h"
#include "host/tables/messages.h"

namespace kelvarin {

namespace {

QString systemText(int error) {
  return qt_error_string(error);
}

// Links are followed, so that a rename replaces the file and not the link.
QByteArray resolved(const QByteArray& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.constData(), nullptr),
                                                         &std::free);
  return real ? QByteArray(real.get()) : path;
}

QByteArray folderOf(const QByteArray& path) {
  const qsizetype slash = path.lastIndexOf('/');
  return slash < 0 ? QByteArray("./") : path.left(slash + 1);
}

// The temporary files of one output have names that begin alike, however long its own name is.
QByteArray beginOfTemporaryNames(const QByteArray& finalPath) {
  std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
  for (const char byte : finalPath.mid(folderOf(finalPath).size())) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  }
  return ".kelvarin-" + QByteArray::number(static_cast<qulonglong>(hash), 16) + '-';
}

constexpr char kTemporaryEnding[] = ".part";

QByteArray temporaryName(const QByteArray& finalPath) {
  return folderOf(finalPath) + beginOfTemporaryNames(finalPath) +
         QByteArray::number(MainUI::getNearUniqueRandomID(), 16) + kTemporaryEnding;
}

// What earlier runs have left that were killed. Those at work hold the lock of their file.
void removeLeftovers(const QByteArray& finalPath) {
  const QByteArray folder = folderOf(finalPath);
  const QByteArray begin = beginOfTemporaryNames(finalPath);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.constData()), &::closedir);
  while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr) {
    const QByteArray name(entry->d_name);
    if (!name.startsWith(begin) || !name.endsWith(kTemporaryEnding)) {
      continue;
    }
    const QByteArray path = folder + name;
    const int descriptor =
        ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0) {
      if (!isFileLockedElsewhere(descriptor)) {
        ::unlink(path.constData());
      }
      ::close(descriptor);
    }
  }
}

// A write to a pipe that nobody reads gives an error instead of ending the process.
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
  // Keeps errno, which tells about the write.
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

// So many bytes at a time begin their way to the disk, so that little is left to wait for at the
// end.
constexpr long long kBytesToStore = 8 << 20;

void waitUntilWritable(int descriptor) {
  pollfd entry{descriptor, POLLOUT, 0};
  ::poll(&entry, 1, 1000);
}

}  // namespace

OutputFile::~OutputFile() {
  discard();
}

Status<QString> OutputFile::open(const QString& path) {
  discard();
  m_isComplete = false;
  m_hasReaderLeft = false;
  m_finalPath.clear();
  m_bytesWritten = 0;
  m_bytesBeingStored = 0;
  if (path == QLatin1String("-")) {
    m_shownName = table_messages::standardOutput();
    m_descriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    return m_descriptor >= 0 ? Status<QString>(Done{}) : Failure{writeError(errno)};
  }
  m_shownName = path;
  const QByteArray name = resolved(QFile::encodeName(path));
  struct stat present {};
  if (::stat(name.constData(), &present) == 0) {
    if (S_ISDIR(present.st_mode)) {
      return Failure{table_messages::cannotCreate(path, table_messages::isFolder())};
    }
    if (!S_ISREG(present.st_mode)) {
      return openDirectly(name);
    }
  }
  return openTemporary(name);
}

Status<QString> OutputFile::openDirectly(const QByteArray& path) {
  m_descriptor = ::open(path.constData(), O_WRONLY | O_CLOEXEC);
  if (m_descriptor < 0) {
    return Failure{writeError(errno)};
  }
  return Done{};
}

Status<QString> OutputFile::openTemporary(const QByteArray& path) {
  m_finalPath = path;
  struct stat present {};
  const bool replaces = ::stat(path.constData(), &present) == 0;
  if (replaces && ::access(path.constData(), W_OK) != 0) {
    return Failure{table_messages::cannotCreate(m_shownName, systemText(errno))};
  }
  removeLeftovers(path);
  m_descriptor = openUnnamedFile(folderOf(path).constData());
  if (m_descriptor < 0) {
    m_temporaryPath = temporaryName(path);
    m_unfinishedName.enter(m_temporaryPath);
    m_descriptor =
        ::open(m_temporaryPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }
  if (m_descriptor < 0) {
    const int error = errno;
    m_unfinishedName.withdraw();
    m_temporaryPath.clear();
    return Failure{table_messages::cannotCreate(m_shownName, systemText(error))};
  }
  // Says that the file is at work, for whoever removes leftovers; it is never refused.
  [[maybe_unused]] const bool isLocked = takeFileLock(m_descriptor);
  if (replaces) {
    // Fails on file systems without permissions; the file is then as new files there are.
    [[maybe_unused]] const int ignored = ::fchmod(m_descriptor, present.st_mode & 07777);
  }
  return Done{};
}

ssize_t OutputFile::writeOnce(const char* bytes, std::size_t size) {
  if (!isDirect()) {
    return ::write(m_descriptor, bytes, size);
  }
  const PipeSignalBlocked blocked;
  const ssize_t written = ::write(m_descriptor, bytes, size);
  if (written < 0 && errno == EAGAIN) {
    waitUntilWritable(m_descriptor);
    errno = EAGAIN;
  }
  return written;
}

Status<QString> OutputFile::write(const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = writeOnce(bytes, size);
    if (written > 0) {
      bytes += written;
      size -= static_cast<std::size_t>(written);
      m_bytesWritten += written;
      startStoring();
      continue;
    }
    const int error = written == 0 ? ENOSPC : errno;
    if (error == EINTR || error == EAGAIN) {
      continue;
    }
    m_hasReaderLeft = error == EPIPE && isStandardOutput();
    const int missing = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
    if (!isDiskFull(error) || !MainUI::displayOutOfDiskSpace(m_shownName, missing, true)) {
      return Failure{writeError(error)};
    }
  }
  return Done{};
}

// Only asks for it; complete() waits, and sees what went wrong.
void OutputFile::startStoring() {
  const long long waiting = m_bytesWritten - m_bytesBeingStored;
  if (waiting >= kBytesToStore && !isDirect()) {
    [[maybe_unused]] const int ignored =
        ::sync_file_range(m_descriptor, m_bytesBeingStored, waiting, SYNC_FILE_RANGE_WRITE);
    m_bytesBeingStored = m_bytesWritten;
  }
}

// A device that takes no more has no disk on which space could be made.
bool OutputFile::isDiskFull(int error) const {
  struct stat written {};
  return (error == ENOSPC || error == EDQUOT) && ::fstat(m_descriptor, &written) == 0 &&
         S_ISREG(written.st_mode);
}

// Also by a name such as /dev/stdout.
bool OutputFile::isStandardOutput() const {
  struct stat written {};
  struct stat standard {};
  return ::fstat(m_descriptor, &written) == 0 && ::fstat(STDOUT_FILENO, &standard) == 0 &&
         written.st_dev == standard.st_dev && written.st_ino == standard.st_ino;
}

QString OutputFile::writeError(int error) const {
  const QString reason = error == EPIPE ? table_messages::readerWentAway() : systemText(error);
  return isDirect() ? table_messages::cannotWriteDirectly(m_shownName, reason)
                    : table_messages::cannotWrite(m_shownName, reason);
}

Status<QString> OutputFile::complete() {
  if (!isDirect()) {
    if (::fsync(m_descriptor) != 0) {
      return Failure{writeError(errno)};
    }
  } else {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0 && errno != EINTR) {
      return Failure{writeError(errno)};
    }
  }
  m_isComplete = true;
  return Done{};
}

Status<QString> OutputFile::publish() {
  if (isDirect()) {
    return Done{};
  }
  if (!takeFinalName()) {
    const QString text = writeError(errno);
    discard();
    return Failure{text};
  }
  m_unfinishedName.withdraw();
  m_temporaryPath.clear();
  closeDescriptor();
  const int folder = ::open(folderOf(m_finalPath).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    ::fsync(folder);
    ::close(folder);
  }
  return Done{};
}

// A file without a name cannot replace another at once; it needs a name of its own first.
bool OutputFile::takeFinalName() {
  if (m_temporaryPath.isEmpty()) {
    if (nameUnnamedFile(m_descriptor, m_finalPath.constData())) {
      return true;
    }
    const bool isReplacing = errno == EEXIST;
    const QByteArray name = temporaryName(m_finalPath);
    m_unfinishedName.enter(name);
    if (!isReplacing || !nameUnnamedFile(m_descriptor, name.constData())) {
      const int error = errno;
      m_unfinishedName.withdraw();
      errno = error;
      return false;
    }
    m_temporaryPath = name;
  }
  return ::rename(m_temporaryPath.constData(), m_finalPath.constData()) == 0;
}

void OutputFile::discard() {
  if (!m_temporaryPath.isEmpty()) {
    ::unlink(m_temporaryPath.constData());
    m_unfinishedName.withdraw();
    m_temporaryPath.clear();
  }
  closeDescriptor();
}

void OutputFile::closeDescriptor() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}

}  // namespace kelvarin
