#include "host/engine/input_columns.h"

#include <algorithm>

#include "host/engine/check_run.h"
#include "host/engine/graph_stack.h"
#include "host/engine/run_results.h"

namespace kelvarin {

namespace {

QString firstError(const std::vector<LogLine>& log) {
  const auto found = std::find_if(
      log.begin(), log.end(), [](const LogLine& line) { return line.level == LogLevel::error; });
  return found == log.end() ? QString() : found->text;
}

PinColumns announcedColumns(const Graph& graph, const GraphLink& link,
                            const ExecutionOptions& options) {
  RunRecord stopSwitch;
  CheckRun run(graph, GraphLinks(graph).withUpstream({link.from}), stopSwitch, options);
  run.announceColumns();
  PinColumns columns = columnsOf(run.execution().action(link.from)->output(link.fromPin));
  run.close();
  return columns;
}

}  // namespace

PinColumns columnsOfInputPin(const Graph& graph, const ActionItem& action, int pin,
                             const ExecutionOptions& options) {
  PinColumns columns;
  const GraphLink* link = graph.linkTo(action, pin);
  if (link == nullptr) {
    return columns;
  }
  RecordingServices services(nullptr);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  (void)workOnGraphStack(graph, [&] { columns = announcedColumns(graph, *link, options); });
  if (!columns.isKnown) {
    columns.whyUnknown = firstError(services.takeLog());
  }
  return columns;
}

}  // namespace kelvarin
