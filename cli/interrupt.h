// Lets SIGINT and SIGTERM stop a run in an orderly way: its state becomes "stopped by the user",
// which the engine sees at the next row. A second signal ends the process at once.
//
// Threads: install from the main thread; the handler only touches lock-free atomics.
#pragma once

#include "host/contract/global_parameters.h"

namespace kelvarin {

class InterruptibleRun {
 public:
  // One at a time; `record` outlives this object.
  explicit InterruptibleRun(RunRecord& record);
  ~InterruptibleRun();
  InterruptibleRun(const InterruptibleRun&) = delete;
  InterruptibleRun& operator=(const InterruptibleRun&) = delete;
};

// From now on a signal outside of a run ends the process with the status that says so.
void endOnInterrupt();

// True once a signal arrived.
bool wasInterrupted();

}  // namespace kelvarin
