// Checks a graph by running it without rows.
//
// Every action has a record of its own, so that a fault in one leaves the others to be checked.
// Actions upstream of a variable table compute in full, but only when the action that has the table
// asks for it.
#include <deque>

#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_graph.h"
#include "host/engine/run_results.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

std::vector<char> actionsAboveTables(const Graph& graph) {
  std::vector<int> ends;
  for (const GraphLink& link : graph.links) {
    if (link.toPin != 0) {
      ends.push_back(link.from);
    }
  }
  return GraphLinks(graph).withUpstream(std::move(ends));
}

void finish(RunningAction& action) {
  while (action.advance()) {
  }
}

void checkActions(const GraphExecution& execution) {
  for (const int index : execution.order()) {
    RunningAction* action = execution.action(index);
    if (action != nullptr && !action->record().mustComputeFull) {
      finish(*action);
    }
  }
  // A table that nobody has asked for need not be read, but its branch is checked like the rest.
  for (const int index : execution.order()) {
    RunningAction* action = execution.action(index);
    if (action != nullptr && !action->hasBegun()) {
      action->record().mustComputeFull = false;
      finish(*action);
    }
  }
}

RunResult checkOnThisStack(const Graph& graph, RunRecord& record, const ExecutionOptions& options,
                           RecordingServices& services) {
  tellWarnings(graph);
  const std::vector<char> computesInFull = actionsAboveTables(graph);
  std::deque<RunRecord> records(graph.actions.size());
  std::vector<RunRecord*> parts;
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    records[i].mustComputeFull = computesInFull[i] != 0;
    const bool isSink = graph.actions[i].item->endpoint() == ActionItem::Endpoint::writer;
    parts.push_back(isSink ? nullptr : &records[i]);
  }
  GraphExecution execution(graph, parts, record, options);
  (void)execution.open();  // an action that refuses has failed its record; the others go on
  checkActions(execution);
  for (RunRecord& part : records) {
    part.endNormally();
  }
  execution.close();
  for (const RunRecord& part : records) {
    if (part.status == RunningState::failed) {
      record.fail();
    }
  }
  record.endNormally();
  return resultOf(graph, execution, services);
}

}  // namespace

RunResult checkGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  return resultOfWork(graph, record, [&](RecordingServices& services) {
    return checkOnThisStack(graph, record, options, services);
  });
}

}  // namespace kelvarin
