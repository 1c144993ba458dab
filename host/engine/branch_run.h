// Runs one action of a graph with what lies upstream of it, for an editor that steps through its
// rows.
//
// The action itself is run, so that an editor attached to it sees its rows; what lies upstream is a
// copy, so that the rest of the graph can be edited meanwhile.
// Used by: the HostServices::runBranch() of programs with editors.
// Threads: called on the thread that edits the graph; the computation is on the runner's. The
// catalogue, the graph's settings and the action outlive it.
// Errors: in the log; the runner's state says how the run ended.
#pragma once

#include "host/contract/engine_runner.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph.h"

namespace kelvarin {

// `inputPin` >= 0 runs only the branch that feeds this pin; -1 runs the action too. Sinks
// downstream take no part. EngineRunner::stop() stops the run. False when the action is not in the
// graph or the pin not linked.
bool runBranch(const Graph& graph, const ActionCatalogue& catalogue, EngineRunner& runner,
               ActionItem& action, int inputPin, const ExecutionOptions& options = {});

}  // namespace kelvarin
