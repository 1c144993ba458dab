// Functions of the table for many rows at once, by the bodies that the String Parser calls.
//
// Each returns how many rows it did: those before a result of another type than was expected, or as
// MadeTexts says.
#pragma once

#include <cstddef>

#include "expression/functions/column_call.h"
#include "expression/functions/function_line.h"

namespace kelvarin {

std::size_t callFunction(const FunctionLine& line, const ColumnCall& call);

}  // namespace kelvarin
