#include "cli/progress_line.h"

#include <algorithm>

#include <fmt/format.h>

namespace kelvarin {

namespace {

constexpr int kBarWidth = 20;
constexpr auto kInterval = std::chrono::milliseconds(100);

std::string barOf(double fractionDone) {
  const double fraction = std::clamp(fractionDone, 0.0, 1.0);
  const int filled = static_cast<int>(fraction * kBarWidth);
  return fmt::format("[{:#<{}}{:-<{}}] {:3.0f} %  ", "", filled, "", kBarWidth - filled,
                     fraction * 100.0);
}

}  // namespace

void ProgressLine::show(const RunProgress& progress) {
  const Clock::time_point now = Clock::now();
  if (now - m_lastDrawn < kInterval) {
    return;
  }
  m_lastDrawn = now;
  m_console.showProgress(
      progressText(progress, std::chrono::duration<double>(now - m_start).count()));
}

std::string progressText(const RunProgress& progress, double seconds) {
  const double rowsPerSecond =
      seconds > 0.0 ? static_cast<double>(progress.rowsRead) / seconds : 0.0;
  return fmt::format("{}{} rows  {:.0f} rows/s",
                     progress.fractionDone < 0.0 ? "" : barOf(progress.fractionDone),
                     progress.rowsRead, rowsPerSecond);
}

}  // namespace kelvarin
