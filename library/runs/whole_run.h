// A run of a graph from its sources to its sinks, for a program that can follow and stop it.
//
// Threads: the caller's is the engine thread; the stop may be requested on any.
#pragma once

#include "library/errors/error_details.h"
#include "library/runs/run_services.h"

namespace kelvarin {

// The result of a run that has failed, too. `options` need no threads.
RunResult runWhole(Graph& graph, const WorkSettings& settings, ExecutionOptions options);

// Of a run that has ended well; else the error.
Outcome<RunResult> runToEnd(Graph& graph, const WorkSettings& settings, ExecutionOptions options);

// Calls the program's function, where there is one.
std::function<void(const RunProgress&)> progressCall(const kelvarin_progress& progress);

}  // namespace kelvarin
