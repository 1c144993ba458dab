#include "host/engine/branch_run.h"

#include "host/contract/host_services.h"
#include "host/contract/host_session.h"
#include "host/engine/graph_execution.h"
#include "host/engine/graph_stack.h"

namespace kelvarin {

namespace {

void compute(const Graph& graph, int end, RunRecord& record, const ExecutionOptions& options) {
  std::vector<RunRecord*> records;
  for (const char isInBranch : GraphLinks(graph).withUpstream({end})) {
    records.push_back(isInBranch != 0 ? &record : nullptr);
  }
  GraphExecution execution(graph, records, record, options);
  if (execution.open()) {
    execution.drive();
  }
  record.endNormally();
  execution.close();
}

// The last action of the branch, -1 when there is none.
int endOfBranch(const Graph& graph, const ActionItem& action, int inputPin) {
  if (inputPin < 0) {
    return graph.indexOf(action);
  }
  const GraphLink* link = graph.linkTo(action, inputPin);
  return link == nullptr ? -1 : link->from;
}

}  // namespace

bool runBranch(const Graph& graph, EngineRunner& runner, const ActionItem& action, int inputPin,
               const ExecutionOptions& options) {
  const int end = endOfBranch(graph, action, inputPin);
  if (end < 0) {
    return false;
  }
  runner.start([&graph, end, options](RunRecord& record) {
    HostSession session(hostServices());
    const HostSession::Scope scope(&session);
    if (!workOnGraphStack(graph, [&] { compute(graph, end, record, options); })) {
      record.fail();
    }
  });
  return true;
}

}  // namespace kelvarin
