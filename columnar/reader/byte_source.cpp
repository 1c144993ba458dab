#include "columnar/reader/byte_source.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/file_lock.h"

namespace kelvarin {

namespace {

class FileSource final : public ByteSource {
 public:
  explicit FileSource(int descriptor) : m_descriptor(descriptor) {}
  ~FileSource() override { ::close(m_descriptor); }
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  std::uint64_t size() const override {
    struct stat status{};
    return ::fstat(m_descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
  }

  std::uint64_t storedSize() const override {
    constexpr std::uint64_t kBytesOfBlock = 512;
    struct stat status{};
    if (::fstat(m_descriptor, &status) != 0) {
      return 0;
    }
    return std::min(static_cast<std::uint64_t>(status.st_size),
                    static_cast<std::uint64_t>(status.st_blocks) * kBytesOfBlock);
  }

  bool isBeingWritten() const override { return isFileLockedElsewhere(m_descriptor); }

  std::size_t readAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    std::size_t done = 0;
    while (done < count) {
      const ssize_t now = ::pread(m_descriptor, static_cast<char*>(bytes) + done, count - done,
                                  static_cast<off_t>(offset + done));
      if (now < 0 && errno == EINTR) {
        continue;
      }
      if (now <= 0) {
        break;
      }
      done += static_cast<std::size_t>(now);
    }
    return done;
  }

 private:
  const int m_descriptor;
};

}  // namespace

std::unique_ptr<ByteSource> openFileSource(const std::string& path) {
  // O_NONBLOCK, since opening a pipe without a writer would block the run.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    return nullptr;
  }
  auto source = std::make_unique<FileSource>(descriptor);
  struct stat status{};
  const bool isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  return isRegular ? std::move(source) : nullptr;
}

}  // namespace kelvarin
