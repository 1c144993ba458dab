#include "host/engine/graph_links.h"

#include <algorithm>

namespace kelvarin {

GraphLinks::GraphLinks(const Graph& graph)
    : m_from(graph.actions.size()), m_to(graph.actions.size()) {
  for (const GraphLink& link : graph.links) {
    m_from[index(link.from)].push_back(link);
    m_to[index(link.to)].push_back(link);
  }
}

std::vector<int> GraphLinks::order() const {
  std::vector<std::size_t> inputsLeft;
  std::vector<int> order;
  for (int action = 0; action < actionCount(); ++action) {
    inputsLeft.push_back(to(action).size());
    if (inputsLeft.back() == 0) {
      order.push_back(action);
    }
  }
  for (std::size_t done = 0; done < order.size(); ++done) {
    for (const GraphLink& link : from(order[done])) {
      if (--inputsLeft[index(link.to)] == 0) {
        order.push_back(link.to);
      }
    }
  }
  return order;
}

std::vector<int> GraphLinks::findCycle() const {
  std::vector<char> isOrdered(m_from.size());
  for (const int action : order()) {
    isOrdered[index(action)] = 1;
  }
  const auto first = std::find(isOrdered.begin(), isOrdered.end(), 0);
  if (first == isOrdered.end()) {
    return {};
  }
  // An action that is not ordered reads from another such action, so going upstream must come
  // round.
  std::vector<int> path{static_cast<int>(first - isOrdered.begin())};
  std::vector<char> isOnPath(m_from.size());
  for (;;) {
    isOnPath[index(path.back())] = 1;
    const auto& inputs = to(path.back());
    const int above = std::find_if(inputs.begin(), inputs.end(), [&](const GraphLink& link) {
                        return isOrdered[index(link.from)] == 0;
                      })->from;
    if (isOnPath[index(above)] != 0) {
      path.erase(path.begin(), std::find(path.begin(), path.end(), above));
      std::reverse(path.begin(), path.end());
      std::rotate(path.begin(), std::min_element(path.begin(), path.end()), path.end());
      return path;
    }
    path.push_back(above);
  }
}

std::vector<char> GraphLinks::withUpstream(std::vector<int> actions) const {
  std::vector<char> isUpstream(m_from.size());
  std::vector<int>& open = actions;
  for (const int action : open) {
    isUpstream[index(action)] = 1;
  }
  while (!open.empty()) {
    const int current = open.back();
    open.pop_back();
    for (const GraphLink& link : to(current)) {
      if (isUpstream[index(link.from)] == 0) {
        isUpstream[index(link.from)] = 1;
        open.push_back(link.from);
      }
    }
  }
  return isUpstream;
}

int GraphLinks::depth() const {
  std::vector<int> depths(m_from.size(), 1);
  int deepest = 0;
  for (const int action : order()) {
    const int depth = depths[index(action)];
    deepest = std::max(deepest, depth);
    for (const GraphLink& link : from(action)) {
      depths[index(link.to)] = std::max(depths[index(link.to)], depth + 1);
    }
  }
  return deepest;
}

}  // namespace kelvarin
