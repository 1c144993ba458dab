// Runs a branch of the open graph beside the user interface, for an editor that wants to see rows.
//
// The program's HostServices does the computing (runBranch); the runner owns the thread.
// Threads: run(), wait() and the destructor on the user-interface thread, computationFinished() on
// the runner's.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include "base/export.h"

class ActionItem;

class KELVARIN_CORE EngineRunner {
 public:
  EngineRunner() = default;
  // Waits for the end. A derived class calls wait() first in its own destructor, since the thread
  // calls its computationFinished().
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

  // At the end of every run that was started, on its thread.
  virtual void computationFinished() {}

  // For HostServices::runBranch(): does the work on the runner's thread.
  void start(std::function<void()> computation);

 private:
  std::atomic<bool> m_isRunning{false};
  int m_pinType = 0;
  std::thread m_thread;
};
