#include "cli/calc/repeated_input.h"

#include <cerrno>
#include <cstdint>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kelvarin {

namespace {

// False when `stop` can be read first.
bool await(int descriptor, short event, int stop) {
  pollfd entries[] = {{descriptor, event, 0}, {stop, POLLIN, 0}};
  while (::poll(entries, 2, -1) < 0 && errno == EINTR) {
  }
  return entries[1].revents == 0;
}

}  // namespace

RepeatedInput::RepeatedInput() {
  m_start = ::lseek(STDIN_FILENO, 0, SEEK_CUR);
  if (m_start >= 0) {
    return;
  }
  m_source = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  m_stop = ::eventfd(0, EFD_CLOEXEC);
  passOn(true);
}

RepeatedInput::~RepeatedInput() {
  stop();
  if (m_source >= 0) {
    ::dup2(m_source, STDIN_FILENO);
    ::close(m_source);
  }
  if (m_stop >= 0) {
    ::close(m_stop);
  }
}

void RepeatedInput::startAgain() {
  if (m_start >= 0) {
    ::lseek(STDIN_FILENO, m_start, SEEK_SET);
    return;
  }
  stop();
  passOn(false);
}

int RepeatedInput::end() {
  stop();
  return m_error;
}

// Through a new pipe, since nothing of the first reader may be left in it.
void RepeatedInput::passOn(bool isKept) {
  int ends[2] = {-1, -1};
  if (m_source < 0 || m_stop < 0 || ::pipe2(ends, O_CLOEXEC) != 0) {
    return;
  }
  constexpr int kPipeSize = 1 << 20;
  ::fcntl(ends[1], F_SETPIPE_SZ, kPipeSize);
  ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
  ::dup2(ends[0], STDIN_FILENO);
  ::close(ends[0]);
  m_thread = std::thread([this, to = ends[1], isKept] {
    forward(to, isKept);
    ::close(to);
  });
}

void RepeatedInput::forward(int to, bool isKept) {
  if (!isKept && !write(to, m_kept.data(), m_kept.size())) {
    return;
  }
  constexpr std::size_t kAtOnce = 1 << 18;
  std::vector<char> bytes(kAtOnce);
  while (!m_isAtEnd && await(m_source, POLLIN, m_stop)) {
    const ssize_t got = ::read(m_source, bytes.data(), bytes.size());
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) {
      continue;
    }
    if (got <= 0) {
      m_error = got < 0 ? errno : 0;
      m_isAtEnd = true;
      return;
    }
    const auto size = static_cast<std::size_t>(got);
    if (isKept) {
      m_kept.append(bytes.data(), size);
    }
    if (!write(to, bytes.data(), size)) {
      return;
    }
  }
}

// False when the reader has seen enough, or the thread has to end.
bool RepeatedInput::write(int to, const char* bytes, std::size_t size) const {
  while (size > 0) {
    if (!await(to, POLLOUT, m_stop)) {
      return false;
    }
    const ssize_t done = ::write(to, bytes, size);
    if (done < 0 && errno != EINTR && errno != EAGAIN) {
      return false;
    }
    bytes += done > 0 ? done : 0;
    size -= done > 0 ? static_cast<std::size_t>(done) : 0;
  }
  return true;
}

void RepeatedInput::stop() {
  if (!m_thread.joinable()) {
    return;
  }
  constexpr std::uint64_t kOne = 1;
  (void)!::write(m_stop, &kOne, sizeof kOne);
  m_thread.join();
  std::uint64_t ignored = 0;
  (void)!::read(m_stop, &ignored, sizeof ignored);
}

}  // namespace kelvarin
