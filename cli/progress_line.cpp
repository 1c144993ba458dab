#include "cli/progress_line.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "cli/reports/progress_objects.h"

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

// Minutes and seconds; empty when it is not known.
std::string timeLeft(double seconds) {
  if (seconds < 0.0) {
    return {};
  }
  constexpr long kSecondsOfMinute = 60;
  const long whole = std::lround(std::ceil(seconds));
  return fmt::format("  {}:{:02} left", whole / kSecondsOfMinute, whole % kSecondsOfMinute);
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
  return fmt::format(
      "{}{} rows  {:.0f} rows/s{}", progress.fractionDone < 0.0 ? "" : barOf(progress.fractionDone),
      progress.rowsRead, rowsPerSecond, timeLeft(remainingSeconds(progress.fractionDone, seconds)));
}

}  // namespace kelvarin
