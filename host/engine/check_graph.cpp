// Checks a graph by running it without rows.
//
// Every action has a record of its own, so that a fault in one leaves the others to be checked.
// Actions upstream of a variable table compute in full, but only when the action that has the table
// asks for it.
#include <deque>

#include "host/contract/host_services.h"
#include "host/files/output_check.h"
#include "host/engine/file_check.h"
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

// Has columns, and no rows.
class CheckedPin final : public InputPin {
 public:
  CheckedPin(const OutputPin& upstream, ActionItem& action)
      : m_upstream(upstream), m_action(action) {}

  const OneRow* next() override { return nullptr; }
  const OneRow* announcedColumns() override {
    return m_upstream.isAnnounced ? &m_upstream.row : nullptr;
  }
  ActionItem* upstreamAction() const override { return &m_action; }

 private:
  const OutputPin& m_upstream;
  ActionItem& m_action;
};

bool isSink(const ActionItem& item) {
  return item.endpoint() == ActionItem::Endpoint::writer;
}

std::vector<ActionPorts> portsOfSinks(const Graph& graph, const GraphExecution& execution) {
  std::vector<ActionPorts> ports(graph.actions.size());
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const ActionItem& item = *graph.actions[i].item;
    ports[i].inputs.resize(isSink(item) ? static_cast<std::size_t>(item.inputPinCount()) : 0);
  }
  for (const GraphLink& link : graph.links) {
    auto& inputs = ports[static_cast<std::size_t>(link.to)].inputs;
    RunningAction* upstream = inputs.empty() ? nullptr : execution.action(link.from);
    if (upstream != nullptr) {
      inputs[static_cast<std::size_t>(link.toPin)] =
          std::make_unique<CheckedPin>(upstream->output(link.fromPin), upstream->item());
    }
  }
  return ports;
}

// Sinks are not opened; those that can be checked without are.
void checkSinks(const Graph& graph, const GraphExecution& execution,
                std::deque<RunRecord>& records) {
  std::vector<ActionPorts> ports = portsOfSinks(graph, execution);
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    ActionItem& item = *graph.actions[i].item;
    auto* sink = dynamic_cast<OutputCheck*>(&item);
    if (sink == nullptr || !isSink(item)) {
      continue;
    }
    const CurrentAction onBehalf(&item);
    item.attach(&records[i], &ports[i]);
    sink->checkOutput();
    item.attach(nullptr, nullptr);
  }
}

RunResult checkOnThisStack(const Graph& graph, RunRecord& record, const ExecutionOptions& options,
                           RecordingServices& services) {
  tellWarnings(graph);
  reportFileWarnings(graph);
  if (!checkUsedFiles(graph)) {
    record.fail();
  }
  const std::vector<char> computesInFull = actionsAboveTables(graph);
  std::deque<RunRecord> records(graph.actions.size());
  std::vector<RunRecord*> parts;
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    records[i].mustComputeFull = computesInFull[i] != 0;
    parts.push_back(isSink(*graph.actions[i].item) ? nullptr : &records[i]);
  }
  GraphExecution execution(graph, parts, record, options);
  (void)execution.open();  // an action that refuses has failed its record; the others go on
  checkActions(execution);
  checkSinks(graph, execution, records);
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
