// The operators of numbers for many rows at once, bit for bit those of the String Parser.
#pragma once

#include <cstddef>

#include "expression/batches/typed_tree.h"

namespace kelvarin {

using NumberLoop1 = void (*)(const double* x, std::size_t rows, double* results);
using NumberLoop2 = void (*)(const double* x, const double* y, std::size_t rows, double* results);

// Null for what is no operator of one number, or of two.
NumberLoop1 numberLoop1(Operation operation);
NumberLoop2 numberLoop2(Operation operation);

}  // namespace kelvarin
