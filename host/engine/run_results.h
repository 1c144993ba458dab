// What a run's counters and log say, action by action.
//
// Used by: run_graph.cpp, check_graph.cpp, input_columns.cpp.
#pragma once

#include <functional>

#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// Runs or checks `graph` by `work`, on a stack that is deep enough, and adds state and duration to
// its result; a graph that cannot be worked on gets an error in the log and fails the record.
RunResult resultOfWork(const Graph& graph, RunRecord& record,
                       const std::function<RunResult(RecordingServices&)>& work);

// One without a text where there is none.
LogLine firstErrorOf(const std::vector<LogLine>& log);

// What the pin has announced.
PinColumns columnsOf(const OutputPin& pin);

// Without state and duration.
RunResult resultOf(const Graph& graph, const GraphExecution& execution,
                   RecordingServices& services);

}  // namespace kelvarin
