#include "host/engine/run_graph.h"

#include "host/engine/file_check.h"
#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_results.h"
#include "host/engine/written_files.h"

namespace kelvarin {

namespace {

void addWrittenFiles(const Graph& graph, const QDateTime& startOfRun, RunResult& result) {
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    if (!graph.actions[i].isDisabled) {
      result.actions[i].files = writtenFiles(*graph.actions[i].item, startOfRun);
    }
  }
}

RunResult runOnThisStack(const Graph& graph, RunRecord& record, const ExecutionOptions& options,
                         RecordingServices& services) {
  reportWarnings(graph);
  record.countsValues = options.countsValues;
  record.reportsRejectedRows = options.reportsRejectedRows;
  const QDateTime start = QDateTime::currentDateTime();
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
  RunResult result = resultOf(graph, execution, services);
  if (record.status == GlobalParameters::RunningState::endedNormally) {
    addWrittenFiles(graph, start, result);
  }
  return result;
}

}  // namespace

RunResult runGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  return resultOfWork(graph, record, [&](RecordingServices& services) {
    return runOnThisStack(graph, record, options, services);
  });
}

}  // namespace kelvarin
