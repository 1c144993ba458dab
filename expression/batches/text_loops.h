// Comparing, joining and choosing texts for many rows at once, byte for byte as the String Parser.
//
// Each returns how many rows it did; see MadeTexts for why there may be fewer than asked for.
#pragma once

#include <cstddef>

#include "expression/batches/typed_tree.h"
#include "expression/functions/column_call.h"

namespace kelvarin {

std::size_t compareTexts(Operation comparison, const ColumnCall& call);
// Null where one of the texts is.
std::size_t joinTexts(const ColumnCall& call);
// The second argument or the third, texts or numbers.
std::size_t chooseValues(const ColumnCall& call);

}  // namespace kelvarin
