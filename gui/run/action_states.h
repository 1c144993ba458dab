// What is shown of each action during a run and after it, made of what the engine reports.
//
// Used by: graph_run.cpp.
// Threads: any.
#pragma once

#include <vector>

#include "gui/document/action_state.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// In the order of the graph that runs.
std::vector<ActionState> statesOf(const RunProgress& progress);
std::vector<ActionState> statesOf(const RunResult& result);

}  // namespace kelvarin
