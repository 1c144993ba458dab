#include "cli/interrupt.h"

#include <atomic>
#include <cassert>
#include <csignal>

#include <unistd.h>

#include "cli/exit_status.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

std::atomic<RunRecord*> runningRecord{nullptr};
std::atomic<bool> isInterrupted{false};
static_assert(std::atomic<RunRecord*>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free && std::atomic<State>::is_always_lock_free);

constexpr int kSignals[] = {SIGINT, SIGTERM};

void setHandler(void (*handler)(int)) {
  for (const int number : kSignals) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action,
              nullptr);  // without SA_RESTART: a question on the terminal ends, too
  }
}

bool hasProgressLine = false;

void endProcess(int) {
  if (hasProgressLine) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, "\n", 1);
  }
  _exit(static_cast<int>(ExitStatus::interrupted));
}

void stopRun(int) {
  setHandler(endProcess);
  isInterrupted.store(true);
  if (RunRecord* record = runningRecord.load()) {
    State expected = State::running;
    record->status.compare_exchange_strong(expected, State::stoppedByUser);
  }
}

}  // namespace

void endOnInterrupt() {
  hasProgressLine = isatty(STDERR_FILENO) != 0;
  setHandler(endProcess);
}

InterruptibleRun::InterruptibleRun(RunRecord& record) {
  [[maybe_unused]] RunRecord* previous = runningRecord.exchange(&record);
  assert(previous == nullptr);
  setHandler(stopRun);
}

InterruptibleRun::~InterruptibleRun() {
  setHandler(endProcess);
  runningRecord.store(nullptr);
}

bool wasInterrupted() {
  return isInterrupted.load();
}

}  // namespace kelvarin
