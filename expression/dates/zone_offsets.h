// The offsets of one time zone from UTC, found once for each stretch of 24 days and kept.
//
// A stretch with one change of the clock keeps both offsets and the second of the change. What lies
// outside the years 1790 to 2330, or in a stretch with more changes, is asked for anew each time.
// Used for local time and for the zones that date texts name.
// Threads: any number at once; two that look for the same stretch find the same.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "expression/dates/clock_reading.h"

namespace kelvarin {

class ZoneOffsets {
 public:
  // Seconds east of UTC at a number of seconds since the epoch. Called from any thread.
  using Source = std::function<std::int64_t(std::int64_t seconds)>;

  explicit ZoneOffsets(Source source);

  // Milliseconds east of UTC.
  Instant at(Instant instant) const {
    const std::int64_t seconds = flooredQuotient(instant, 1000);
    const auto index = static_cast<std::size_t>((seconds >> kStretchBits) - kFirstStretch);
    if (index >= m_stretches.size()) {
      return m_source(seconds) * 1000;
    }
    std::uint64_t stretch = m_stretches[index].load(std::memory_order_relaxed);
    if (stretch == 0) {
      stretch = find(index);
    }
    return stretch == kManyChanges ? m_source(seconds) * 1000 : offsetIn(stretch, seconds) * 1000;
  }

 private:
  static constexpr int kStretchBits = 21;
  static constexpr std::int64_t kFirstStretch = -2700;
  static constexpr std::size_t kStretches = 8192;
  // Fields of a stretch: the offset before and after the change, and the second of the change.
  static constexpr int kOffsetBits = 18;
  static constexpr std::int64_t kOffsetBias = 1 << (kOffsetBits - 1);
  static constexpr int kChangeBits = kStretchBits + 1;
  static constexpr std::uint64_t kFound = std::uint64_t{1} << 63;
  static constexpr std::uint64_t kManyChanges = 1;

  static std::int64_t field(std::uint64_t stretch, int shift, int bits) {
    return static_cast<std::int64_t>((stretch >> shift) & ((std::uint64_t{1} << bits) - 1));
  }
  static std::int64_t offsetIn(std::uint64_t stretch, std::int64_t seconds) {
    const std::int64_t second = seconds & ((std::int64_t{1} << kStretchBits) - 1);
    const bool isAfter = second >= field(stretch, 2 * kOffsetBits, kChangeBits);
    return field(stretch, isAfter ? kOffsetBits : 0, kOffsetBits) - kOffsetBias;
  }
  std::uint64_t find(std::size_t index) const;
  std::uint64_t examined(std::int64_t start) const;
  std::int64_t changeBetween(std::int64_t before, std::int64_t after) const;

  Source m_source;
  mutable std::vector<std::atomic<std::uint64_t>> m_stretches;  // 0: not found yet
};

}  // namespace kelvarin
