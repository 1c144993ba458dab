// Runs one action of a graph with what lies upstream of it, for an editor that steps through its
// rows.
//
// Used by: the HostServices::runBranch() of programs with editors.
// Threads: the computation is on the runner's thread; the graph must outlive it and is not changed
// or run meanwhile.
// Errors: in the log; the runner's state says how the run ended.
#pragma once

#include "host/contract/engine_runner.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph.h"

namespace kelvarin {

// `inputPin` >= 0 runs only the branch that feeds this pin; -1 runs the action too. Sinks
// downstream take no part. EngineRunner::stop() stops the run. False when the action is not in the
// graph or the pin not linked.
bool runBranch(const Graph& graph, EngineRunner& runner, const ActionItem& action, int inputPin,
               const ExecutionOptions& options = {});

}  // namespace kelvarin
