// Expression -> graph: functions become the operations of their bodies, powers become products,
// conditions masks.
//
// Used by native_compiler.cpp.
#pragma once

#include "jit/expression.h"
#include "jit/graph.h"

namespace kelvarin::jit {

// Returns the node of the expression's value. Rounding is a call where the processor has no
// instruction for it.
NodeId lower(const Expression& expression, bool canRound, Graph& graph);

}  // namespace kelvarin::jit
