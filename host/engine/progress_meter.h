// Reports how far a run is when somebody has asked for it.
//
// The engine looks at a flag after every call of an action; nothing else is done for it.
// Used by: running_action.cpp, activity_sampler.cpp.
// Threads: the engine thread; askForReport() is called on any.
#pragma once

#include <atomic>
#include <functional>
#include <utility>

namespace kelvarin {

class ProgressMeter {
 public:
  explicit ProgressMeter(std::function<void()> report) : m_report(std::move(report)) {}

  // At the end of the call that is under way.
  void askForReport() { m_isDue.store(true, std::memory_order_relaxed); }

  void reportWhenDue() {
    if (m_isDue.load(std::memory_order_relaxed)) [[unlikely]] {
      m_isDue.store(false, std::memory_order_relaxed);
      m_report();
    }
  }

 private:
  std::function<void()> m_report;
  std::atomic<bool> m_isDue{false};
};

}  // namespace kelvarin
