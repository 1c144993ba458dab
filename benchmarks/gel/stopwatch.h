// Clocks and medians of the benchmark. Threads: any.
#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

namespace kelvarin {

inline double secondsOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace kelvarin
