#include "host/engine/branch_run.h"

#include <algorithm>

#include "host/engine/graph_execution.h"
#include "host/engine/graph_stack.h"

namespace kelvarin {

namespace {

void compute(const Graph& graph, const std::vector<RunRecord*>& records, RunRecord& record,
             const ExecutionOptions& options) {
  GraphExecution execution(graph, records, record, options);
  if (execution.open()) {
    execution.drive();
  }
  record.endNormally();
  execution.close();
}

// The last action of the branch, -1 when there is none.
int endOfBranch(const Graph& graph, const ActionItem& action, int inputPin) {
  const int index = graph.indexOf(action);
  if (index < 0 || inputPin < 0) {
    return index;
  }
  const auto link = std::find_if(
      graph.links.begin(), graph.links.end(),
      [index, inputPin](const GraphLink& one) { return one.to == index && one.toPin == inputPin; });
  return link == graph.links.end() ? -1 : link->from;
}

}  // namespace

bool runBranch(const Graph& graph, EngineRunner& runner, const ActionItem& action, int inputPin,
               RunRecord& record, const ExecutionOptions& options) {
  const int end = endOfBranch(graph, action, inputPin);
  if (end < 0) {
    return false;
  }
  std::vector<RunRecord*> records;
  for (const char isInBranch : GraphLinks(graph).withUpstream({end})) {
    records.push_back(isInBranch != 0 ? &record : nullptr);
  }
  runner.start([&graph, records, &record, options] {
    if (!workOnGraphStack(graph, [&] { compute(graph, records, record, options); })) {
      record.fail();
    }
  });
  return true;
}

}  // namespace kelvarin
