// What a run's counters and log say, action by action.
//
// Used by: run_graph.cpp, check_graph.cpp.
#pragma once

#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// Without state and duration.
RunResult resultOf(const Graph& graph, const GraphExecution& execution,
                   RecordingServices& services);

}  // namespace kelvarin
