// The columns of the table `texts`: one kind of text each, and how much information is in it.
//
// Threads: plain values once made.
#pragma once

#include <string>
#include <vector>

namespace kelvarin {

struct TextColumn {
  std::string name;
  std::vector<std::string> values;
  // What no format can go below: an ideal code that knows how the texts were made takes so many.
  double bitsPerValue = 0.0;
};

std::vector<TextColumn> makeTextColumns(std::size_t rows);

}  // namespace kelvarin
