#include "host/engine/run_graph.h"

#include <chrono>

#include "host/engine/graph_execution.h"
#include "host/engine/messages.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_results.h"

namespace kelvarin {

namespace {

bool isLinked(const Graph& graph, int action, int pin) {
  for (const GraphLink& link : graph.links) {
    if (link.to == action && link.toPin == pin) {
      return true;
    }
  }
  return false;
}

// A source says itself which of its pins it needs.
bool needsFirstPin(const ActionItem& item) {
  return item.inputPinCount() > 0 && item.endpoint() != ActionItem::Endpoint::reader;
}

void warnOfMissingLinks(const Graph& graph) {
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const ActionItem& item = *graph.actions[i].item;
    if (needsFirstPin(item) && !isLinked(graph, static_cast<int>(i), 0)) {
      const CurrentAction onBehalf(&item);
      MainUI::addLog(LogLevel::warning, engine_messages::firstPinNotLinked(graph.actions[i].name));
    }
  }
}

}  // namespace

RunResult runGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  const auto start = std::chrono::steady_clock::now();
  RecordingServices services;
  tellWarnings(graph);
  warnOfMissingLinks(graph);
  GraphExecution execution(graph, std::vector<RunRecord*>(graph.actions.size(), &record), record,
                           options);
  if (execution.open()) {
    execution.drive();
  }
  // Sinks look at the status when they are closed: only after a normal end do their files take
  // their places.
  record.endNormally();
  execution.close();
  RunResult result = resultOf(graph, execution, services);
  result.state = record.status;
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

}  // namespace kelvarin
