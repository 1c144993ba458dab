#include "host/engine/run_graph.h"

#include <chrono>

#include "host/engine/file_check.h"
#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_results.h"

namespace kelvarin {

RunResult runGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  const auto start = std::chrono::steady_clock::now();
  RecordingServices services;
  tellWarnings(graph);
  GraphExecution execution(graph, std::vector<RunRecord*>(graph.actions.size(), &record), record,
                           options);
  if (!checkUsedFiles(graph)) {
    record.fail();
  } else if (execution.open()) {
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
