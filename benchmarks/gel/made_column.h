// A column of the made tables: its values are drawn, so the information in them can be counted.
//
// Threads: plain values once made.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/gel/chance.h"

namespace kelvarin {

template <typename Value>
struct MadeColumn {
  std::string name;
  std::vector<Value> values;
  // What no format can go below: an ideal code that knows how the values were made takes so many.
  // 0 where that is not known.
  double bitsPerValue = 0.0;
};

// `make` draws a value.
template <typename Value, typename Make>
MadeColumn<Value> madeColumn(const std::string& name, std::size_t rows, std::uint64_t seed,
                             Make make) {
  Chance chance(seed);
  MadeColumn<Value> column{.name = name, .values = {}};
  column.values.reserve(rows);
  for (std::size_t row = 0; row < rows; ++row) {
    column.values.push_back(make(chance));
  }
  column.bitsPerValue = chance.bits() / static_cast<double>(rows);
  return column;
}

}  // namespace kelvarin
