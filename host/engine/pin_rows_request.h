// Computes rows of a pin for editors and previews (host/contract/pin_rows.h), from copies of the
// graph that is edited.
//
// Used by: the HostServices::requestRows() of programs with editors.
// Threads: the thread that edits the graph; every request has one of its own, and so is independent
// of the others and of later edits.
// Errors: the first error that the branch logs ends its request; nothing else is shown of its log.
#pragma once

#include <vector>

#include "host/contract/pin_rows.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph.h"

namespace kelvarin {

class PinRowsRequests {
 public:
  // The catalogue outlives this object.
  explicit PinRowsRequests(const ActionCatalogue& catalogue, ExecutionOptions options = {});
  // Cancels the requests under way and waits for their threads.
  ~PinRowsRequests();
  PinRowsRequests(const PinRowsRequests&) = delete;
  PinRowsRequests& operator=(const PinRowsRequests&) = delete;

  // Null when the action is not in the graph, has no such pin, or nothing is linked to the input
  // pin. `version` is what the rows' columns are stamped with.
  std::unique_ptr<RowsRequest> start(const Graph& graph, const ActionItem& action, int pin,
                                     bool isOutput, long long limit,
                                     std::shared_ptr<RowsReceiver> receiver, quint64 version = 0);

 private:
  class Task;
  void forgetEndedTasks();

  const ActionCatalogue& m_catalogue;
  const ExecutionOptions m_options;
  std::vector<std::unique_ptr<Task>> m_tasks;
};

}  // namespace kelvarin
