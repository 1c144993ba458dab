#include "cli/interrupt.h"

#include <atomic>
#include <cassert>
#include <csignal>

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

std::atomic<RunRecord*> runningRecord{nullptr};
std::atomic<bool> isInterrupted{false};
static_assert(std::atomic<RunRecord*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free &&
              std::atomic<State>::is_always_lock_free);

constexpr int kSignals[] = {SIGINT, SIGTERM};

void setHandler(void (*handler)(int)) {
  for (const int number : kSignals) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);  // without SA_RESTART: a question on the terminal ends, too
  }
}

void stopRun(int) {
  setHandler(SIG_DFL);
  isInterrupted.store(true);
  if (RunRecord* record = runningRecord.load()) {
    State expected = State::running;
    record->status.compare_exchange_strong(expected, State::stoppedByUser);
  }
}

}  // namespace

InterruptibleRun::InterruptibleRun(RunRecord& record) {
  [[maybe_unused]] RunRecord* previous = runningRecord.exchange(&record);
  assert(previous == nullptr);
  setHandler(stopRun);
}

InterruptibleRun::~InterruptibleRun() {
  setHandler(SIG_DFL);
  runningRecord.store(nullptr);
}

bool wasInterrupted() { return isInterrupted.load(); }

}  // namespace kelvarin
