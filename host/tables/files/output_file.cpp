#include "host/tables/files/output_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <QFile>

#include "base/file_lock.h"
#include "base/unnamed_file.h"
#include "host/contract/main_ui.h"
#include "host/tables/files/messages.h"

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
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0) {
      if (!isFileLockedElsewhere(descriptor)) {
        ::unlink(path.constData());
      }
      ::close(descriptor);
    }
  }
}

}  // namespace

OutputFile::OutputFile()
    : m_file([this](std::size_t missingBytes) {
        const auto missing = static_cast<int>(std::min<std::size_t>(missingBytes, INT_MAX));
        return MainUI::displayOutOfDiskSpace(m_shownName, missing, true);
      }) {}

OutputFile::~OutputFile() {
  discard();
}

Status<QString> OutputFile::open(const QString& path) {
  discard();
  m_isComplete = false;
  m_hasReaderLeft = false;
  m_finalPath.clear();
  m_bytesWritten = 0;
  if (path == QLatin1String("-")) {
    m_shownName = table_messages::standardOutput();
    return openStream(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
  }
  m_shownName = path;
  const QByteArray name = resolved(QFile::encodeName(path));
  struct stat present{};
  if (::stat(name.constData(), &present) == 0) {
    if (S_ISDIR(present.st_mode)) {
      return Failure{table_messages::cannotCreate(path, table_messages::isFolder())};
    }
    if (!S_ISREG(present.st_mode)) {
      return openStream(::open(name.constData(), O_WRONLY | O_CLOEXEC));
    }
  }
  return openTemporary(name);
}

Status<QString> OutputFile::openStream(int descriptor) {
  if (descriptor < 0) {
    return Failure{writeError(errno)};
  }
  m_file.open(descriptor, WritableFile::Kind::stream);
  return Done{};
}

Status<QString> OutputFile::openTemporary(const QByteArray& path) {
  m_finalPath = path;
  struct stat present{};
  const bool replaces = ::stat(path.constData(), &present) == 0;
  if (replaces && ::access(path.constData(), W_OK) != 0) {
    return Failure{table_messages::cannotCreate(m_shownName, systemText(errno))};
  }
  removeLeftovers(path);
  int descriptor = openUnnamedFile(folderOf(path).constData());
  if (descriptor < 0) {
    m_temporaryPath = temporaryName(path);
    m_unfinishedName.enter(m_temporaryPath);
    descriptor = ::open(m_temporaryPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }
  if (descriptor < 0) {
    const int error = errno;
    m_unfinishedName.withdraw();
    m_temporaryPath.clear();
    return Failure{table_messages::cannotCreate(m_shownName, systemText(error))};
  }
  m_file.open(descriptor);
  // Says that the file is at work, for whoever removes leftovers; it is never refused.
  [[maybe_unused]] const bool isLocked = takeFileLock(descriptor);
  if (replaces) {
    // Fails on file systems without permissions; the file is then as new files there are.
    [[maybe_unused]] const int ignored = ::fchmod(descriptor, present.st_mode & 07777);
  }
  return Done{};
}

Status<QString> OutputFile::write(const char* bytes, std::size_t size) {
  return noteWritten(m_file.write(bytes, size), size);
}

Status<QString> OutputFile::write(std::span<const std::string_view> pieces) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) {
    size += piece.size();
  }
  return noteWritten(m_file.write(pieces), size);
}

Status<QString> OutputFile::noteWritten(int error, std::size_t size) {
  if (error != 0) {
    m_hasReaderLeft = error == EPIPE && isStandardOutput();
    return Failure{writeError(error)};
  }
  m_bytesWritten += static_cast<long long>(size);
  m_file.beginStoring(static_cast<std::uint64_t>(m_bytesWritten));
  return Done{};
}

// Also by a name such as /dev/stdout.
bool OutputFile::isStandardOutput() const {
  struct stat written{};
  struct stat standard{};
  return ::fstat(m_file.descriptor(), &written) == 0 && ::fstat(STDOUT_FILENO, &standard) == 0 &&
         written.st_dev == standard.st_dev && written.st_ino == standard.st_ino;
}

QString OutputFile::writeError(int error) const {
  const QString reason = error == EPIPE ? table_messages::readerWentAway() : systemText(error);
  return isStream() ? table_messages::cannotWriteDirectly(m_shownName, reason)
                    : table_messages::cannotWrite(m_shownName, reason);
}

Status<QString> OutputFile::complete() {
  const int error = isStream() ? m_file.close() : m_file.sync();
  if (error != 0) {
    return Failure{writeError(error)};
  }
  m_isComplete = true;
  return Done{};
}

Status<QString> OutputFile::closeUntilPublished() {
  if (isStream()) {
    return Done{};
  }
  if (m_temporaryPath.isEmpty() && !takeTemporaryName()) {
    return Failure{writeError(errno)};
  }
  (void)m_file.close();
  return Done{};
}

Status<QString> OutputFile::publish() {
  if (isStream()) {
    return Done{};
  }
  if (!takeFinalName()) {
    const QString text = writeError(errno);
    discard();
    return Failure{text};
  }
  m_unfinishedName.withdraw();
  m_temporaryPath.clear();
  (void)m_file.close();
  const int folder = ::open(folderOf(m_finalPath).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    ::fsync(folder);
    ::close(folder);
  }
  return Done{};
}

bool OutputFile::takeTemporaryName() {
  const QByteArray name = temporaryName(m_finalPath);
  m_unfinishedName.enter(name);
  if (!nameUnnamedFile(m_file.descriptor(), name.constData())) {
    const int error = errno;
    m_unfinishedName.withdraw();
    errno = error;
    return false;
  }
  m_temporaryPath = name;
  return true;
}

// A file without a name cannot replace another at once; it needs a name of its own first.
bool OutputFile::takeFinalName() {
  if (m_temporaryPath.isEmpty()) {
    if (nameUnnamedFile(m_file.descriptor(), m_finalPath.constData())) {
      return true;
    }
    if (errno != EEXIST || !takeTemporaryName()) {
      return false;
    }
  }
  return ::rename(m_temporaryPath.constData(), m_finalPath.constData()) == 0;
}

void OutputFile::discard() {
  if (!m_temporaryPath.isEmpty()) {
    ::unlink(m_temporaryPath.constData());
    m_unfinishedName.withdraw();
    m_temporaryPath.clear();
  }
  (void)m_file.close();
}

Status<QString> writeWholeFile(const QString& path, std::string_view bytes) {
  OutputFile file;
  Status<QString> status = file.open(path);
  if (status) {
    status = file.write(bytes.data(), bytes.size());
  }
  if (status) {
    status = file.complete();
  }
  return status ? file.publish() : status;
}

}  // namespace kelvarin
