// Small integers as Parquet stores them: runs of one value, and groups of eight values bit by bit.
//
// Used by: the pages of Parquet files, for which values are present and for codes of dictionaries.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvarin {

// Of `count` values at the worst, and what putRunLengths() overwrites beyond.
constexpr std::size_t maxRunLengthsSize(std::size_t count, int bitWidth) {
  constexpr std::size_t kMaxHeaders = 10;  // of a group, and of a run
  return (count / 8 + 1) * (static_cast<std::size_t>(bitWidth) + kMaxHeaders) + 8;
}

// Writes the values at `target` and returns the address after them. Each has at most `bitWidth`
// bits, 1 to 32.
std::uint8_t* putRunLengths(std::uint8_t* target, const std::uint32_t* values, std::size_t count,
                            int bitWidth);
// One run.
std::uint8_t* putRun(std::uint8_t* target, std::uint32_t value, std::size_t count, int bitWidth);

}  // namespace kelvarin
