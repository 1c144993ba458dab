// How many rows in hand are worked on together: so many that their values stay in the processor's
// nearer caches, and with many columns fewer, so that memory stays bounded.
//
// Used by what evaluates rows ahead and by the sinks that take them together. Threads: any.
#pragma once

#include <algorithm>
#include <cstddef>

namespace kelvarin {

// `columns` is at least 1.
constexpr std::size_t rowsAtOnce(std::size_t columns) {
  constexpr std::size_t kMostRows = 1024;
  constexpr std::size_t kLeastRows = 64;
  constexpr std::size_t kMostValues = 128 * 1024;
  return std::clamp(kMostValues / columns, kLeastRows, kMostRows);
}

}  // namespace kelvarin
