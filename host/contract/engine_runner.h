// Runs a branch of the open graph beside the user interface, for an editor that wants to see rows.
//
// The program's HostServices does the computing (runBranch); the runner owns the thread.
// Threads: run(), wait() and the destructor on the user-interface thread, computationFinished() on
// the runner's, stop() and state() on any.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include "base/export.h"
#include "host/contract/global_parameters.h"

class ActionItem;

class KELVARIN_CORE EngineRunner {
 public:
  EngineRunner() = default;
  // Stops the run and waits for its end. A derived class calls stop() and wait() first in its own
  // destructor, since the thread calls its computationFinished().
  virtual ~EngineRunner();
  EngineRunner(const EngineRunner&) = delete;
  EngineRunner& operator=(const EngineRunner&) = delete;

  // Computes the input branch of `action` and runs the action; `pin` is the one whose rows are
  // wanted, -1 the action as a whole, `pinType` 0 an input and 1 an output pin. False when the host
  // cannot, or while a run goes on. With `untilFinished` it returns at the end of the run.
  bool run(int pin, ActionItem* action, int pinType, bool untilFinished);
  bool isRunning() const { return m_isRunning.load(); }
  int pinType() const { return m_pinType; }
  void wait();
  // Ends the run as the user would, at its next row; wait() waits for its end.
  void stop() { m_record.stop(); }
  // Of the run that was started last.
  GlobalParameters::RunningState state() const { return m_record.status; }

  // At the end of every run that was started, on its thread.
  virtual void computationFinished() {}

  // For HostServices::runBranch(): does the work on the runner's thread and in the session of the
  // caller, which must outlive the run. Work that leaves its record running has ended normally.
  void start(std::function<void(RunRecord& record)> computation);

 private:
  std::atomic<bool> m_isRunning{false};
  int m_pinType = 0;
  RunRecord m_record;
  std::thread m_thread;
};
