// Checks a graph by running it without rows, then its sinks without opening them.
#include "host/contract/host_session.h"
#include "host/engine/check_run.h"
#include "host/engine/file_check.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_graph.h"
#include "host/engine/run_results.h"
#include "host/files/output_check.h"

namespace kelvarin {

namespace {

// Has columns, and no rows.
class CheckedPin final : public InputPin {
 public:
  CheckedPin(const OutputPin& upstream, ActionItem& action)
      : m_upstream(upstream), m_action(action) {}

  const OneRow* next() override { return nullptr; }
  TakenBatch nextBatch() override { return {}; }
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
void checkSinks(const Graph& graph, CheckRun& run) {
  std::vector<ActionPorts> ports = portsOfSinks(graph, run.execution());
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    ActionItem& item = *graph.actions[i].item;
    auto* sink = dynamic_cast<OutputCheck*>(&item);
    if (sink == nullptr || !isSink(item) || graph.actions[i].isDisabled) {
      continue;
    }
    const CurrentAction onBehalf(&item);
    item.attach(&run.record(i), &ports[i]);
    sink->checkOutput();
    item.attach(nullptr, nullptr);
  }
}

RunResult checkOnThisStack(const Graph& graph, RunRecord& record, const ExecutionOptions& options,
                           RecordingServices& services) {
  reportWarnings(graph);
  reportFileWarnings(graph);
  if (!checkUsedFiles(graph)) {
    record.fail();
  }
  std::vector<char> takesPart;
  takesPart.reserve(graph.actions.size());
  for (const GraphAction& action : graph.actions) {
    takesPart.push_back(isSink(*action.item) ? 0 : 1);
  }
  CheckRun run(graph, takesPart, record, options);
  run.announceColumns();
  checkSinks(graph, run);
  run.close();
  if (run.hasFailed()) {
    record.fail();
  }
  record.endNormally();
  return resultOf(graph, run.execution(), services);
}

}  // namespace

RunResult checkGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  return resultOfWork(graph, record, [&](RecordingServices& services) {
    return checkOnThisStack(graph, record, options, services);
  });
}

}  // namespace kelvarin
