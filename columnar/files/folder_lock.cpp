#include "columnar/files/folder_lock.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

constexpr auto kPatience = std::chrono::seconds(10);
constexpr auto kBetweenAttempts = std::chrono::milliseconds(2);

}  // namespace

FolderLock::FolderLock(const std::string& file)
    : m_descriptor(::open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) {
      break;  // no locks here
    }
    if (std::chrono::steady_clock::now() >= end) {
      return;
    }
    std::this_thread::sleep_for(kBetweenAttempts);
  }
  m_isHeld = true;
}

FolderLock::~FolderLock() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

}  // namespace kelvarin
