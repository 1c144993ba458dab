// The columns of the table `numbers`: one kind of numbers each.
//
// Threads: plain values once made.
#pragma once

#include "benchmarks/gel/made_column.h"

namespace kelvarin {

using NumberColumn = MadeColumn<double>;

std::vector<NumberColumn> makeNumberColumns(std::size_t rows);

}  // namespace kelvarin
