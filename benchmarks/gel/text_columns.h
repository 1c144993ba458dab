// The columns of the table `texts`: one kind of text each.
//
// Threads: plain values once made.
#pragma once

#include "benchmarks/gel/made_column.h"

namespace kelvarin {

using TextColumn = MadeColumn<std::string>;

std::vector<TextColumn> makeTextColumns(std::size_t rows);

}  // namespace kelvarin
