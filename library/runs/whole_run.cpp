#include "library/runs/whole_run.h"

#include <utility>

#include "host/contract/host_session.h"

namespace kelvarin {

RunResult runWhole(Graph& graph, const WorkSettings& settings, ExecutionOptions options) {
  RunServices services(settings);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  graph.settings->setThreadCount(settings.threads);
  RunRecord record;
  const std::stop_callback stop(settings.stop, [&record] { record.stop(); });
  return runGraph(graph, record, options);
}

Outcome<RunResult> runToEnd(Graph& graph, const WorkSettings& settings, ExecutionOptions options) {
  RunResult result = runWhole(graph, settings, std::move(options));
  if (!result.isOk()) {
    return Failure{errorOfLog(std::move(result.log), result.state)};
  }
  return result;
}

std::function<void(const RunProgress&)> progressCall(const kelvarin_progress& progress) {
  if (progress.function == nullptr) {
    return {};
  }
  return [progress](const RunProgress& now) {
    progress.function(progress.context, now.rowsRead, now.fractionDone);
  };
}

}  // namespace kelvarin
