#include "host/engine/run_results.h"

#include <algorithm>
#include <chrono>

#include "host/contract/host_session.h"
#include "host/engine/graph_stack.h"

namespace kelvarin {

namespace {

std::vector<PinColumns> columnsOfPins(const RunningAction* action) {
  std::vector<PinColumns> pins;
  if (action == nullptr) {
    return pins;
  }
  for (const auto& pin : action->ports().outputs) {
    pins.push_back(columnsOf(*pin));
  }
  return pins;
}

std::vector<QVector<SortInfos>> sortOrdersOfPins(const RunningAction* action) {
  std::vector<QVector<SortInfos>> orders;
  if (action == nullptr) {
    return orders;
  }
  for (const auto& pin : action->ports().outputs) {
    orders.push_back(pin->isAnnounced ? pin->row.sortInfos() : QVector<SortInfos>());
  }
  return orders;
}

}  // namespace

LogLine firstErrorOf(const std::vector<LogLine>& log) {
  const auto found = std::find_if(
      log.begin(), log.end(), [](const LogLine& line) { return line.level == LogLevel::error; });
  return found == log.end() ? LogLine() : *found;
}

PinColumns columnsOf(const OutputPin& pin) {
  PinColumns known;
  known.isKnown = pin.isAnnounced;
  for (int i = 0; known.isKnown && i < pin.row.sz(); ++i) {
    known.columns.push_back({pin.row.colName(i), pin.row.getMetaType(i)});
  }
  return known;
}

RunResult resultOfWork(const Graph& graph, RunRecord& record,
                       const std::function<RunResult(RecordingServices&)>& work) {
  const auto start = std::chrono::steady_clock::now();
  RecordingServices services(hostServices());
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  RunResult result;
  if (!workOnGraphStack(graph, [&] { result = work(services); })) {
    record.fail();
    result.log = services.takeLog();
  }
  result.state = record.status;
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

RunResult resultOf(const Graph& graph, const GraphExecution& execution,
                   RecordingServices& services) {
  RunResult result;
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const ActionItem& item = *graph.actions[i].item;
    const int index = static_cast<int>(i);
    const ActionProgress progress = execution.progressOf(index);
    ActionResult action;
    action.name = graph.actions[i].name;
    action.typeName = QString::fromLatin1(item.typeName());
    action.phase = progress.phase;
    action.seconds = progress.seconds;
    action.rowsIn = progress.rowsIn;
    action.rowsOut = progress.rowsOut;
    action.backends = services.backendsOf(item);
    action.namedColumns = services.columnsNamedBy(item);
    action.pins = columnsOfPins(execution.action(index));
    action.sortOrders = sortOrdersOfPins(execution.action(index));
    action.report = services.reportOf(item);
    result.actions.push_back(std::move(action));
  }
  for (const GraphLink& link : graph.links) {
    if (link.toPin == 0) {
      ActionResult& reader = result.actions[static_cast<std::size_t>(link.to)];
      reader.source = link.from;
      reader.sourcePin = link.fromPin;
    }
  }
  result.log = services.takeLog();
  return result;
}

}  // namespace kelvarin
