#include "host/engine/run_graph.h"

#include "host/engine/file_check.h"
#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_results.h"

namespace kelvarin {

namespace {

RunResult runOnThisStack(const Graph& graph, RunRecord& record, const ExecutionOptions& options,
                         RecordingServices& services) {
  reportWarnings(graph);
  GraphExecution execution(graph, std::vector<RunRecord*>(graph.actions.size(), &record), record,
                           options);
  if (!checkUsedFiles(graph)) {
    record.fail();
  } else if (execution.open()) {
    execution.drive();
  }
  // Sinks look at the status when they are closed: only after a normal end do their files get
  // their names.
  record.endNormally();
  execution.close();
  return resultOf(graph, execution, services);
}

}  // namespace

RunResult runGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  return resultOfWork(graph, record, [&](RecordingServices& services) {
    return runOnThisStack(graph, record, options, services);
  });
}

}  // namespace kelvarin
