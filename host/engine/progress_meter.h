// Asks now and then how far a run is.
//
// Counting costs an increment a call; the clock is read every few hundred calls, each of which may
// be for many rows.
// Used by: running_action.cpp.
// Threads: the engine thread.
#pragma once

#include <chrono>
#include <functional>

namespace kelvarin {

class ProgressMeter {
 public:
  // An empty report is never called.
  explicit ProgressMeter(std::function<void()> report) : m_report(std::move(report)) {}

  void countCall() {
    if ((++m_calls & kCallsBetweenLooks) == 0) [[unlikely]] {
      look();
    }
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr unsigned kCallsBetweenLooks = 0xFF;
  static constexpr std::chrono::milliseconds kInterval{100};

  void look() {
    const Clock::time_point now = Clock::now();
    if (m_report && now - m_lastReport >= kInterval) {
      m_lastReport = now;
      m_report();
    }
  }

  std::function<void()> m_report;
  unsigned m_calls = 0;
  Clock::time_point m_lastReport = Clock::now();
};

}  // namespace kelvarin
