#include "cli/interrupt.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "cli/exit_status.h"
#include "cli/messages.h"
#include "host/tables/files/unfinished_names.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

std::atomic<RunRecord*> runningRecord{nullptr};
std::atomic<bool> isInterrupted{false};
static_assert(std::atomic<RunRecord*>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free && std::atomic<State>::is_always_lock_free);

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU, SIGXFSZ};

// With what the system and a loaded machine need, a second.
constexpr auto kTimeToEnd = std::chrono::milliseconds(900);

bool hasProgressLine = false;
int interruptDescriptor = -1;  // can be read from the first signal on

[[noreturn]] void endProcess() {
  if (hasProgressLine) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, "\n", 1);
  }
  removeUnfinishedFiles();
  _exit(static_cast<int>(ExitStatus::interrupted));
}

void stopRun(RunRecord& record) {
  isInterrupted.store(true);
  State expected = State::running;
  record.status.compare_exchange_strong(expected, State::stoppedByUser);
  constexpr std::uint64_t kOne = 1;
  [[maybe_unused]] const ssize_t written = write(interruptDescriptor, &kOne, sizeof kOne);
}

void onSignal(int number, siginfo_t* info, void*) {
  const int error = errno;
  RunRecord* record = runningRecord.load();
  const bool isOfOwnWrite = number == SIGXFSZ && info->si_pid == getpid();
  if (!isOfOwnWrite && (record == nullptr || isInterrupted.load())) {
    endProcess();
  }
  if (record != nullptr) {
    stopRun(*record);
  }
  errno = error;
}

enum class Woken { byFirst, bySecond, byTime };

// Waits until one of two descriptors can be read; a negative one is none. Without a time: for ever.
Woken awaitEither(int first, int second, std::optional<std::chrono::milliseconds> timeToWait) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + timeToWait.value_or(std::chrono::milliseconds(0));
  pollfd entries[] = {{first, POLLIN, 0}, {second, POLLIN, 0}};
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    const int milliseconds = timeToWait ? std::max(0, static_cast<int>(left.count())) : -1;
    const int count = poll(entries, 2, milliseconds);
    if (count == 0) {
      return Woken::byTime;
    }
    if (count > 0) {
      return entries[0].revents != 0 ? Woken::byFirst : Woken::bySecond;
    }
  }
}

// Signals go to the threads that wait for something, whose waits they end.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &m_previous);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_previous, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_previous;
};

}  // namespace

void endOnInterrupt() {
  hasProgressLine = isatty(STDERR_FILENO) != 0;
  interruptDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  for (const int number : kSignals) {
    struct sigaction present = {};
    if (sigaction(number, nullptr, &present) == 0 && present.sa_handler == SIG_IGN) {
      continue;
    }
    struct sigaction action = {};
    action.sa_sigaction = onSignal;
    action.sa_flags = SA_SIGINFO;  // without SA_RESTART: waiting calls end, too
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
  }
}

InterruptibleRun::InterruptibleRun(RunRecord& record)
    : m_record(record), m_ended(eventfd(0, EFD_CLOEXEC)) {
  if (m_ended >= 0) {
    const SignalsBlocked blocked;
    m_watcher = std::thread([this] { endLate(); });
  }
  [[maybe_unused]] RunRecord* previous = runningRecord.exchange(&record);
  assert(previous == nullptr);
}

InterruptibleRun::~InterruptibleRun() {
  runningRecord.store(nullptr);
  if (m_ended >= 0) {
    eventfd_write(m_ended, 1);
    m_watcher.join();
    close(m_ended);
  }
}

// The watching thread: wakes what waits in a run that was interrupted, and ends the run where that
// has not ended a second later.
void InterruptibleRun::endLate() const {
  if (awaitEither(m_ended, interruptDescriptor, std::nullopt) == Woken::byFirst) {
    return;
  }
  m_record.stop();
  if (awaitEither(m_ended, -1, kTimeToEnd) == Woken::byTime) {
    // Not through the console, whose lock the run may hold.
    [[maybe_unused]] const ssize_t written =
        write(STDERR_FILENO, program_messages::interruptedLate(),
              std::strlen(program_messages::interruptedLate()));
    endProcess();
  }
}

bool wasInterrupted() {
  return isInterrupted.load();
}

bool isInterruptedWithin(int milliseconds) {
  return awaitEither(interruptDescriptor, -1, std::chrono::milliseconds(milliseconds)) ==
         Woken::byFirst;
}

bool awaitInput(int descriptor) {
  return awaitEither(interruptDescriptor, descriptor, std::nullopt) == Woken::bySecond;
}

}  // namespace kelvarin
