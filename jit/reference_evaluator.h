// Evaluates an expression step by step, without machine code.
//
// Tests compare machine code with it; native_compiler.cpp falls back to it where machine code
// cannot be made or executed.
// Threads: any number at once.
#pragma once

#include "jit/expression.h"

namespace kelvarin::jit {

double evaluate(const Expression& expression, const double* values);

}  // namespace kelvarin::jit
