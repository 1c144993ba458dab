// The progress bar of a run: rows, rows a second, and where they are known the share done and the
// time that is left.
//
// Threads: the engine's.
#pragma once

#include <chrono>
#include <string>

#include "cli/console.h"
#include "host/engine/execution_options.h"

namespace kelvarin {

class ProgressLine {
 public:
  explicit ProgressLine(Console& console) : m_console(console) {}

  // Draws at most ten times a second.
  void show(const RunProgress& progress);

 private:
  using Clock = std::chrono::steady_clock;

  Console& m_console;
  const Clock::time_point m_start = Clock::now();
  Clock::time_point m_lastDrawn = m_start;
};

// For instance "[########------------]  40 %  1200000 rows  3000000 rows/s  1:05 left"; without the
// bar and the time where the share is unknown.
std::string progressText(const RunProgress& progress, double seconds);

}  // namespace kelvarin
