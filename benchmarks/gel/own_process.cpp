#include "benchmarks/gel/own_process.h"

#include <cerrno>
#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

namespace kelvarin {

namespace {

constexpr char kDone = 'd';
constexpr char kFailed = 'f';

struct Pipe {
  int ends[2];

  Pipe() {
    if (::pipe(ends) != 0) {
      throw std::system_error(errno, std::generic_category(), "pipe");
    }
  }
  ~Pipe() {
    ::close(ends[0]);
    ::close(ends[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void send(const void* bytes, std::size_t size) const {
    if (::write(ends[1], bytes, size) != static_cast<ssize_t>(size)) {
      ::_exit(1);
    }
  }
  // Everything up to the end.
  std::string receive() {
    ::close(std::exchange(ends[1], -1));
    std::string received;
    char piece[512];
    for (ssize_t count = 0; (count = ::read(ends[0], piece, sizeof piece)) != 0;) {
      if (count > 0) {
        received.append(piece, static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        break;
      }
    }
    return received;
  }
};

[[noreturn]] void work(const std::function<void()>& piece, const Pipe& pipe, const void* result,
                       std::size_t size) {
  try {
    piece();
    pipe.send(&kDone, 1);
    pipe.send(result, size);
  } catch (const std::exception& exception) {
    pipe.send(&kFailed, 1);
    const std::string message = exception.what();
    pipe.send(message.data(), message.size());
  }
  ::_exit(0);
}

}  // namespace

void runInOwnProcess(const std::function<void()>& piece, void* result, std::size_t size) {
  Pipe pipe;
  const pid_t child = ::fork();
  if (child < 0) {
    throw std::system_error(errno, std::generic_category(), "fork");
  }
  if (child == 0) {
    work(piece, pipe, result, size);
  }
  const std::string received = pipe.receive();
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (received.size() == 1 + size && received[0] == kDone) {
    received.copy(static_cast<char*>(result), size, 1);
    return;
  }
  throw std::runtime_error(received.empty() || received[0] != kFailed
                               ? "a process of the benchmark ended before its time"
                               : received.substr(1));
}

}  // namespace kelvarin
