#include "columnar/files/table_exchange.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/unnamed_file.h"
#include "columnar/files/folder_lock.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

constexpr off_t kLongestJournal = 1 << 20;

std::string besideMainFile(const std::string& mainFile, const char* ending) {
  return folderOf(mainFile).append(".").append(nameWithoutFolder(mainFile)).append(ending);
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  ~Descriptor() {
    if (m_descriptor >= 0) {
      const int error = errno;
      ::close(m_descriptor);
      errno = error;
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_descriptor; }

 private:
  const int m_descriptor;
};

bool writeAll(int descriptor, Bytes bytes) {
  while (!bytes.empty()) {
    const ssize_t taken = ::write(descriptor, bytes.data(), bytes.size());
    if (taken < 0 && errno != EINTR) {
      return false;
    }
    bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(taken, 0)));
  }
  return true;
}

bool synchronize(int descriptor) {
  return ::fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS;
}

bool synchronizeFolderOf(const std::string& file) {
  const Descriptor folder(::open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder.get() < 0 || synchronize(folder.get());
}

enum class JournalState { absent, readable, damaged };

JournalState readJournal(const std::string& mainFile, ExchangeJournal& journal) {
  const Descriptor file(
      ::open(journalFile(mainFile).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (file.get() < 0) {
    return errno == ENOENT || errno == ENOTDIR ? JournalState::absent : JournalState::damaged;
  }
  struct stat status{};
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size > kLongestJournal) {
    return JournalState::damaged;
  }
  std::vector<unsigned char> bytes(static_cast<std::size_t>(status.st_size));
  const ssize_t size = bytes.empty() ? 0 : ::pread(file.get(), bytes.data(), bytes.size(), 0);
  auto decoded = size == status.st_size ? decodedJournal(bytes) : std::nullopt;
  if (!decoded) {
    return JournalState::damaged;
  }
  journal = std::move(*decoded);
  return JournalState::readable;
}

// The journal appears atomically, with all its bytes on the disk.
bool writeJournal(const std::string& mainFile, const ExchangeJournal& journal) {
  const std::vector<unsigned char> bytes = encoded(journal);
  const std::string path = journalFile(mainFile);
  const Descriptor unnamed(openUnnamedFile(folderOf(mainFile).c_str()));
  if (unnamed.get() >= 0) {
    return writeAll(unnamed.get(), bytes) && synchronize(unnamed.get()) &&
           nameUnnamedFile(unnamed.get(), path.c_str()) && synchronizeFolderOf(mainFile);
  }
  const std::string part = path + ".part";
  ::unlink(part.c_str());
  const Descriptor named(::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  return named.get() >= 0 && writeAll(named.get(), bytes) && synchronize(named.get()) &&
         ::rename(part.c_str(), path.c_str()) == 0 && synchronizeFolderOf(mainFile);
}

// Each step may have been carried out already.
bool carryOut(const std::string& mainFile, const ExchangeJournal& journal) {
  const std::string folder = folderOf(mainFile);
  for (const std::string& name : journal.removed) {
    if (::unlink((folder + name).c_str()) != 0 && errno != ENOENT) {
      return false;
    }
  }
  for (const auto& [from, to] : journal.moves) {
    if (::rename((folder + from).c_str(), (folder + to).c_str()) != 0 && errno != ENOENT) {
      return false;
    }
  }
  if (!synchronizeFolderOf(mainFile) || ::unlink(journalFile(mainFile).c_str()) != 0) {
    return false;
  }
  return synchronizeFolderOf(mainFile);
}

// The new files get the permissions of the old table. File systems without permissions refuse.
void takePermissions(const std::string& mainFile, const ExchangeJournal& journal) {
  struct stat status{};
  if (::lstat(mainFile.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return;
  }
  for (const auto& move : journal.moves) {
    (void)::chmod((folderOf(mainFile) + move.first).c_str(), status.st_mode & 0777);
  }
}

// Removes a journal that was never completed.
void removeJournalPart(const std::string& mainFile) {
  ::unlink((journalFile(mainFile) + ".part").c_str());
}

ExchangeJournal journalFor(const std::string& mainFile) {
  const std::string replacement = replacementFile(mainFile);
  const std::string main(nameWithoutFolder(mainFile));
  const std::size_t stemOfReplacement = stemOfMainFile(nameWithoutFolder(replacement)).size();
  ExchangeJournal journal;
  journal.removed = sideFileNamesOf(mainFile);
  for (const std::string& from : sideFileNamesOf(replacement)) {
    std::string to = std::string(stemOfMainFile(main)).append(from, stemOfReplacement);
    std::erase(journal.removed, to);
    journal.moves.emplace_back(from, std::move(to));
  }
  journal.moves.emplace_back(nameWithoutFolder(replacement), main);
  return journal;
}

}  // namespace

std::string replacementFile(const std::string& mainFile) {
  return besideMainFile(mainFile, ".new");
}

std::string journalFile(const std::string& mainFile) {
  return besideMainFile(mainFile, ".exchange");
}

OpenExchange finishExchange(const std::string& mainFile) {
  ExchangeJournal journal;
  switch (readJournal(mainFile, journal)) {
    case JournalState::absent:
      return OpenExchange::none;
    case JournalState::damaged:
      return OpenExchange::damaged;
    case JournalState::readable:
      break;
  }
  return carryOut(mainFile, journal) ? OpenExchange::none : OpenExchange::unfinished;
}

OpenExchange finishExchangeBeforeReading(const std::string& mainFile) {
  if (!isSomethingThere(journalFile(mainFile))) {
    return OpenExchange::none;
  }
  const FolderLock folder(mainFile);
  return folder.isHeld() ? finishExchange(mainFile) : OpenExchange::unfinished;
}

bool exchangeTable(const std::string& mainFile) {
  removeJournalPart(mainFile);
  const ExchangeJournal journal = journalFor(mainFile);
  const std::string folder = folderOf(mainFile);
  for (const auto& [from, to] : journal.moves) {
    if (!isReplaceable(folder + to)) {
      errno = EISDIR;
      return false;
    }
  }
  takePermissions(mainFile, journal);
  return synchronizeFolderOf(mainFile) && writeJournal(mainFile, journal) &&
         carryOut(mainFile, journal);
}

std::optional<TableLocation> TableLocation::of(const std::string& mainFile) {
  TableLocation location;
  ExchangeJournal journal;
  switch (readJournal(mainFile, journal)) {
    case JournalState::absent:
      break;
    case JournalState::damaged:
      return std::nullopt;
    case JournalState::readable:
      location.m_journal = std::move(journal);
      break;
  }
  return location;
}

std::string TableLocation::pathOf(const std::string& file) const {
  if (m_journal) {
    for (const auto& [from, to] : m_journal->moves) {
      std::string moved = folderOf(file) + from;
      if (to == nameWithoutFolder(file) && isSomethingThere(moved)) {
        return moved;
      }
    }
  }
  return file;
}

}  // namespace kelvarin
