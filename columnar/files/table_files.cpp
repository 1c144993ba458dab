#include "columnar/files/table_files.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/byte_cursor.h"
#include "base/file_lock.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"
#include "columnar/format/metadata_block.h"

namespace kelvarin {

namespace {

// Opens for reading without waiting for the writer of a pipe.
class OpenedFile {
 public:
  explicit OpenedFile(const std::string& path)
      : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~OpenedFile() {
    if (m_descriptor >= 0) {
      ::close(m_descriptor);
    }
  }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;

  int descriptor() const { return m_descriptor; }
  bool isRegular() const {
    struct stat status{};
    return m_descriptor >= 0 && ::fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode);
  }

 private:
  const int m_descriptor;
};

}  // namespace

bool isColumnarFile(const std::string& path) {
  const OpenedFile file(path);
  unsigned char magic[sizeof kGelMagic];
  return file.isRegular() &&
         ::pread(file.descriptor(), magic, sizeof magic, 0) == ssize_t{sizeof magic} &&
         loadPacked<std::uint32_t>(magic) == kGelMagic;
}

bool isSomethingThere(const std::string& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0;
}

bool isReplaceable(const std::string& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode) || S_ISLNK(status.st_mode);
}

bool isBeingWritten(const std::string& mainFile) {
  const OpenedFile file(mainFile);
  return file.isRegular() && isFileLockedElsewhere(file.descriptor());
}

// Looks for each name, since a folder may have many other files.
std::vector<std::string> sideFileNamesOf(const std::string& mainFile) {
  const std::string main(nameWithoutFolder(mainFile));
  const std::string folder = folderOf(mainFile);
  std::vector<std::string> names;
  for (int set = 0; set < kMaxColumnSets; ++set) {
    std::string name = sideFileName(main, set);
    if (isSomethingThere(folder + name)) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::string tableSharingSideFiles(const std::string& mainFile) {
  if (sideFileNamesOf(mainFile).empty()) {
    return {};
  }
  const std::string main(nameWithoutFolder(mainFile));
  const std::string folder = folderOf(mainFile);
  const std::string sideFile = sideFileName(main, 0);
  const std::string_view stem = stemOfMainFile(main);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), &::closedir);
  while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr) {
    const std::string name(entry->d_name);
    const bool isOther =
        name != main && name.starts_with(stem) && sideFileName(name, 0) == sideFile;
    if (isOther && isColumnarFile(folder + name)) {
      return folder + name;
    }
  }
  return {};
}

bool removeTable(const std::string& mainFile) {
  if (::unlink(mainFile.c_str()) != 0 && errno != ENOENT) {
    return false;
  }
  removeSideFiles(mainFile);
  return true;
}

bool removeUnfinishedTable(const std::string& mainFile) {
  if (!isSomethingThere(mainFile)) {
    return true;
  }
  removeSideFiles(mainFile);
  return ::unlink(mainFile.c_str()) == 0 || errno == ENOENT;
}

void removeSideFiles(const std::string& mainFile) {
  const std::string folder = folderOf(mainFile);
  for (const std::string& name : sideFileNamesOf(mainFile)) {
    ::unlink((folder + name).c_str());  // a folder of that name stays
  }
}

}  // namespace kelvarin
