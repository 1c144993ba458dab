// The links of a graph by the actions at their ends, and the order that they impose.
//
// Made once where many actions are walked; all of it takes time in proportion to actions and links.
// Used by: the reader, the check and the runs of graphs.
// Threads: any, the graph must not change meanwhile.
#pragma once

#include <vector>

#include "host/engine/graph.h"

namespace kelvarin {

class GraphLinks {
 public:
  explicit GraphLinks(const Graph& graph);

  int actionCount() const { return static_cast<int>(m_from.size()); }
  const std::vector<GraphLink>& from(int action) const { return m_from[index(action)]; }
  const std::vector<GraphLink>& to(int action) const { return m_to[index(action)]; }

  // The actions in an order in which each comes after those it reads from; without those on or
  // below a cycle.
  std::vector<int> order() const;
  // The actions along one cycle, each feeding the next and the last the first; empty when there is
  // none.
  std::vector<int> findCycle() const;
  // 1 for every action of `actions` and for those from which they receive rows, directly or through
  // others.
  std::vector<char> withUpstream(std::vector<int> actions) const;
  // The number of actions on the longest way along the links.
  int depth() const;

 private:
  static std::size_t index(int action) { return static_cast<std::size_t>(action); }

  std::vector<std::vector<GraphLink>> m_from;
  std::vector<std::vector<GraphLink>> m_to;
};

}  // namespace kelvarin
