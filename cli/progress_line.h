// The progress bar of a run: rows, rows a second, and the share done where it is known.
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

// For instance "[########------------]  40 %  1200000 rows  3000000 rows/s"; without the bar when
// the share is unknown.
std::string progressText(const RunProgress& progress, double seconds);

}  // namespace kelvarin
