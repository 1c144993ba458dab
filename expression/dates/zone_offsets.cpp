#include "expression/dates/zone_offsets.h"

#include <cstdlib>
#include <utility>

namespace kelvarin {

namespace {

// No zone changes twice within so few seconds, which are 18 hours.
constexpr std::int64_t kSampleDistance = 1 << 16;

}  // namespace

ZoneOffsets::ZoneOffsets(Source source) : m_source(std::move(source)), m_stretches(kStretches) {}

std::uint64_t ZoneOffsets::find(std::size_t index) const {
  const std::int64_t number = static_cast<std::int64_t>(index) + kFirstStretch;
  const std::uint64_t stretch = examined(number << kStretchBits);
  m_stretches[index].store(stretch, std::memory_order_relaxed);
  return stretch;
}

std::uint64_t ZoneOffsets::examined(std::int64_t start) const {
  constexpr std::int64_t size = std::int64_t{1} << kStretchBits;
  const std::int64_t first = m_source(start);
  std::int64_t last = first;
  std::int64_t change = size;
  for (std::int64_t second = kSampleDistance; second <= size; second += kSampleDistance) {
    const std::int64_t end = second == size ? size - 1 : second;
    const std::int64_t offset = m_source(start + end);
    if (offset == last) {
      continue;
    }
    if (change != size) {
      return kManyChanges;
    }
    change = changeBetween(start + second - kSampleDistance, start + end) - start;
    last = offset;
  }
  if (std::llabs(first) >= kOffsetBias || std::llabs(last) >= kOffsetBias) {
    return kManyChanges;
  }
  const auto packed = [](std::int64_t number, int shift) {
    return static_cast<std::uint64_t>(number) << shift;
  };
  return kFound | packed(change, 2 * kOffsetBits) | packed(last + kOffsetBias, kOffsetBits) |
         packed(first + kOffsetBias, 0);
}

// The first second with the offset that is in force at `after`.
std::int64_t ZoneOffsets::changeBetween(std::int64_t before, std::int64_t after) const {
  const std::int64_t offset = m_source(after);
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (m_source(middle) == offset ? after : before) = middle;
  }
  return after;
}

}  // namespace kelvarin
