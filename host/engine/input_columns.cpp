#include "host/engine/input_columns.h"

#include "host/engine/check_run.h"
#include "host/engine/graph_stack.h"
#include "host/engine/run_results.h"

namespace kelvarin {

PinColumns announcedColumns(const Graph& graph, int action, int outputPin, RunRecord& stopSwitch,
                            const ExecutionOptions& options) {
  PinColumns columns;
  (void)workOnGraphStack(graph, [&] {
    CheckRun run(graph, GraphLinks(graph).withUpstream({action}), stopSwitch, options);
    run.announceColumns();
    columns = columnsOf(run.execution().action(action)->output(outputPin));
    run.close();
  });
  return columns;
}

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
  RunRecord stopSwitch;
  columns = announcedColumns(graph, link->from, link->fromPin, stopSwitch, options);
  if (!columns.isKnown) {
    columns.whyUnknown = firstErrorOf(services.takeLog()).text;
  }
  return columns;
}

}  // namespace kelvarin
