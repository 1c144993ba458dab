#include "host/engine/check_run.h"

#include <algorithm>

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

std::deque<RunRecord> recordsOf(const Graph& graph) {
  std::deque<RunRecord> records(graph.actions.size());
  const std::vector<char> computesInFull = actionsAboveTables(graph);
  for (std::size_t i = 0; i < records.size(); ++i) {
    records[i].mustComputeFull = computesInFull[i] != 0;
  }
  return records;
}

std::vector<RunRecord*> chosenFrom(std::deque<RunRecord>& records,
                                   const std::vector<char>& takesPart) {
  std::vector<RunRecord*> chosen;
  chosen.reserve(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    chosen.push_back(takesPart[i] != 0 ? &records[i] : nullptr);
  }
  return chosen;
}

void finish(RunningAction& action) {
  while (action.advance()) {
  }
}

}  // namespace

CheckRun::CheckRun(const Graph& graph, const std::vector<char>& takesPart, RunRecord& stopSwitch,
                   const ExecutionOptions& options)
    : m_records(recordsOf(graph)),
      m_execution(graph, chosenFrom(m_records, takesPart), stopSwitch, options) {}

void CheckRun::announceColumns() {
  (void)m_execution.open();  // an action that refuses has failed its record; the others go on
  for (const int index : m_execution.order()) {
    RunningAction* action = m_execution.action(index);
    if (action != nullptr && !action->record().mustComputeFull) {
      finish(*action);
    }
  }
  // A table that nobody has asked for need not be read, but its branch is checked like the rest.
  for (const int index : m_execution.order()) {
    RunningAction* action = m_execution.action(index);
    if (action != nullptr && !action->hasBegun()) {
      action->record().mustComputeFull = false;
      finish(*action);
    }
  }
}

void CheckRun::close() {
  for (RunRecord& record : m_records) {
    record.endNormally();
  }
  m_execution.close();
}

bool CheckRun::hasFailed() const {
  return std::any_of(m_records.begin(), m_records.end(),
                     [](const RunRecord& record) { return record.status == RunningState::failed; });
}

}  // namespace kelvarin
