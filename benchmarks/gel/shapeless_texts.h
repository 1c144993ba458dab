// The columns of the table `shapeless`: texts that look as if templates or symbols made them small.
//
// What they show is how long a writer searches in vain. Their information is not counted.
// Threads: plain values once made.
#pragma once

#include <vector>

#include "benchmarks/gel/text_columns.h"

namespace kelvarin {

std::vector<TextColumn> makeShapelessColumns(std::size_t rows);

}  // namespace kelvarin
