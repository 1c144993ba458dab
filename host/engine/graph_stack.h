// A stack for graphs with many actions that follow one another: a sink that pulls a row calls all
// actions above it, each from within the next.
//
// Used by: run_graph.cpp, check_graph.cpp, branch_run.cpp.
// Threads: the work is done before the call returns, on a thread of its own where it needs one.
// Errors: logged; an exception of the work leaves the call.
#pragma once

#include <functional>

#include "host/engine/graph.h"

namespace kelvarin {

// Actions that can follow one another along the links of a graph.
constexpr int kDeepestGraph = 100'000;

// False when the graph is deeper, or has no actions, or there is no memory for the stack; then
// nothing was done.
[[nodiscard]] bool workOnGraphStack(const Graph& graph, const std::function<void()>& work);

}  // namespace kelvarin
