// Whose turn it is: which sink pulls rows, and which one is helped out of turn where rows pile up.
//
// Sinks (actions whose rows nobody in the run reads) are called in turns. When rows that wait for
// readers grow to more than a little, the sinks below these readers are called at once, also in the
// midst of another sink's pull, unless they need an action that is at work; so queues stay short.
// An action whose sinks have all finished takes no more rows.
// Used by: graph_execution.cpp.
// Threads: the engine thread.
#pragma once

#include <memory>
#include <vector>

#include "host/engine/graph_links.h"
#include "host/engine/row_links.h"
#include "host/engine/running_action.h"

namespace kelvarin {

class SinkSchedule final : public CongestionRelief {
 public:
  // One entry an action of the graph, null for those that take no part. All are made, in the same
  // order as the links' actions, before drive() is called.
  using Actions = std::vector<std::unique_ptr<RunningAction>>;
  SinkSchedule(const GraphLinks& links, const std::vector<int>& order, const Actions& actions)
      : m_links(links), m_order(order), m_actions(actions) {}

  // Until every sink has finished or the run stops.
  void drive();

 private:
  RunningAction* action(int index) const {
    return m_actions[static_cast<std::size_t>(index)].get();
  }
  bool isInRun(const GraphLink& link) const {
    return action(link.from) != nullptr && action(link.to) != nullptr;
  }
  void findSinks();
  bool takeTurn(int sink, bool isAlone);
  void dismiss(int sink);
  void relieve() override;
  void findSinksThatCanRun();
  void help(const QueueLink& reader);

  const GraphLinks& m_links;
  const std::vector<int>& m_order;
  const Actions& m_actions;
  std::vector<int> m_sinks;
  std::vector<int> m_readersLeft;           // [action]: links to readers that still want rows
  std::vector<char> m_isDismissed;          // [action]: a sink that needs no more rows
  std::vector<RunningAction*> m_sinkBelow;  // [action]: one that can run now, or null
  bool m_isDriving = false;
  bool m_isRelieving = false;
};

}  // namespace kelvarin
