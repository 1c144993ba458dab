// Has actions of a graph announce their columns without a row, for as much of the graph as is
// asked.
//
// Every action has a record of its own, so that a fault in one leaves the others to be checked.
// Actions upstream of a variable table compute in full, but only when the action that has the table
// asks for it.
// Used by: check_graph.cpp, input_columns.cpp.
// Threads: the engine thread.
// Errors: logged on behalf of an action, and its record is failed.
#pragma once

#include <deque>
#include <vector>

#include "host/engine/graph_execution.h"

namespace kelvarin {

class CheckRun {
 public:
  // `takesPart` has one entry an action. `stopSwitch` stops everything.
  CheckRun(const Graph& graph, const std::vector<char>& takesPart, RunRecord& stopSwitch,
           const ExecutionOptions& options);

  void announceColumns();
  // Ends all records that have not failed, and closes the actions.
  void close();
  bool hasFailed() const;

  const GraphExecution& execution() const { return m_execution; }
  // Of an action, also of one that takes no part.
  RunRecord& record(std::size_t index) { return m_records[index]; }

 private:
  std::deque<RunRecord> m_records;
  GraphExecution m_execution;
};

}  // namespace kelvarin
