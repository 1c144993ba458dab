// How many rows are processed in one batch: so many that their values stay in the processor's
// nearer caches, and with many columns fewer, so that memory stays bounded.
//
// Used by what evaluates rows ahead and by the sinks that take them together.
#pragma once

#include <algorithm>
#include <cstddef>

namespace kelvarin {

// `columns` is at least 1.
constexpr std::size_t rowsAtOnce(std::size_t columns) {
  constexpr std::size_t kMaxRows = 1024;
  constexpr std::size_t kMinRows = 64;
  constexpr std::size_t kMaxValues = 128 * 1024;
  return std::clamp(kMaxValues / columns, kMinRows, kMaxRows);
}

}  // namespace kelvarin
