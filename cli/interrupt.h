// Signals that ask the program to end: SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU and SIGXFSZ.
//
// During a run the first one makes the run's state "stopped by the user", which the engine sees at
// the next row and everybody who waits here sees at once. A run that does not end within a second,
// since it waits for another program or evaluates one long expression, is ended then; so is
// everything else at once, and a run at a second signal. An end at once removes the names of
// unfinished files. A signal that was ignored when the program started stays ignored. SIGXFSZ from
// a write of this process is no signal outside of a run: the write fails and is reported.
//
// Threads: install from the main thread; the handler only touches lock-free atomics and
// descriptors.
#pragma once

#include <thread>

#include "host/contract/global_parameters.h"

namespace kelvarin {

// From now on a signal outside of a run ends the process with the status that says so. One of the
// first things that main() does.
void endOnInterrupt();

class InterruptibleRun {
 public:
  // One at a time; `record` outlives this object.
  explicit InterruptibleRun(RunRecord& record);
  ~InterruptibleRun();
  InterruptibleRun(const InterruptibleRun&) = delete;
  InterruptibleRun& operator=(const InterruptibleRun&) = delete;

 private:
  void endLate() const;

  RunRecord& m_record;
  const int m_ended;  // a descriptor that can be read when the run has ended
  std::thread m_watcher;
};

// True once a signal has arrived that asks a run to end.
bool wasInterrupted();

// True when a signal arrives meanwhile, or has arrived before.
bool isInterruptedWithin(int milliseconds);

// Waits until `descriptor` can be read; false when a signal arrives before.
bool awaitInput(int descriptor);

}  // namespace kelvarin
