// The columns of the table `numbers`: one kind of numbers each, and how much information is in it.
//
// Threads: plain values once made.
#pragma once

#include <string>
#include <vector>

namespace kelvarin {

struct NumberColumn {
  std::string name;
  std::vector<double> values;
  // What no format can go below: an ideal code that knows how the numbers were made takes so many.
  // 0 where that is not known.
  double bitsPerValue = 0.0;
};

std::vector<NumberColumn> makeNumberColumns(std::size_t rows);

}  // namespace kelvarin
