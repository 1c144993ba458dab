#include "host/engine/graph.h"

#include <algorithm>

#include "host/contract/host_services.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

bool isLinked(const Graph& graph, int action, int pin) {
  return std::any_of(graph.links.begin(), graph.links.end(),
                     [=](const GraphLink& link) { return link.to == action && link.toPin == pin; });
}

// A source says itself which of its pins it needs.
bool needsFirstPin(const ActionItem& item) {
  return item.inputPinCount() > 0 && item.endpoint() != ActionItem::Endpoint::reader;
}

void warn(const ActionItem& item, const QString& text, XMLNode::Place place = {}) {
  const CurrentAction onBehalf(&item);
  LogDetails details;
  details.place = place;
  logWithDetails(LogLevel::warning, text, details);
}

}  // namespace

int Graph::indexOf(const QString& actionName) const {
  const auto found =
      std::find_if(actions.begin(), actions.end(),
                   [&actionName](const auto& action) { return action.name == actionName; });
  return found == actions.end() ? -1 : static_cast<int>(found - actions.begin());
}

int Graph::indexOf(const ActionItem& item) const {
  const auto found = std::find_if(actions.begin(), actions.end(), [&item](const auto& action) {
    return action.item.get() == &item;
  });
  return found == actions.end() ? -1 : static_cast<int>(found - actions.begin());
}

std::vector<int> actionsInOrder(const Graph& graph) {
  std::vector<int> inputsLeft(graph.actions.size());
  for (const GraphLink& link : graph.links) {
    ++inputsLeft[at(link.to)];
  }
  std::vector<int> order;
  for (std::size_t i = 0; i < inputsLeft.size(); ++i) {
    if (inputsLeft[i] == 0) {
      order.push_back(static_cast<int>(i));
    }
  }
  for (std::size_t done = 0; done < order.size(); ++done) {
    for (const GraphLink& link : graph.links) {
      if (link.from == order[done] && --inputsLeft[at(link.to)] == 0) {
        order.push_back(link.to);
      }
    }
  }
  return order;
}

std::vector<int> findCycle(const Graph& graph) {
  const std::vector<int> order = actionsInOrder(graph);
  std::vector<bool> isOrdered(graph.actions.size());
  for (const int action : order) {
    isOrdered[at(action)] = true;
  }
  const auto first = std::find(isOrdered.begin(), isOrdered.end(), false);
  if (first == isOrdered.end()) {
    return {};
  }
  // An action that is not ordered reads from another such action, so going upstream must come
  // round.
  std::vector<int> path{static_cast<int>(first - isOrdered.begin())};
  for (;;) {
    const auto link = std::find_if(graph.links.begin(), graph.links.end(), [&](const auto& one) {
      return one.to == path.back() && !isOrdered[at(one.from)];
    });
    const auto seen = std::find(path.begin(), path.end(), link->from);
    if (seen != path.end()) {
      path.erase(path.begin(), seen);
      std::reverse(path.begin(), path.end());
      std::rotate(path.begin(), std::min_element(path.begin(), path.end()), path.end());
      return path;
    }
    path.push_back(link->from);
  }
}

std::vector<bool> actionsUpstreamOf(const Graph& graph, int action) {
  std::vector<bool> isUpstream(graph.actions.size());
  std::vector<int> open{action};
  while (!open.empty()) {
    const int current = open.back();
    open.pop_back();
    for (const GraphLink& link : graph.links) {
      if (link.to == current && !isUpstream[at(link.from)]) {
        isUpstream[at(link.from)] = true;
        open.push_back(link.from);
      }
    }
  }
  return isUpstream;
}

void tellWarnings(const Graph& graph) {
  for (const GraphWarning& warning : graph.warnings) {
    warn(*graph.actions[at(warning.action)].item, warning.text, warning.place);
  }
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const GraphAction& action = graph.actions[i];
    if (needsFirstPin(*action.item) && !isLinked(graph, static_cast<int>(i), 0)) {
      warn(*action.item, engine_messages::firstPinNotLinked(action.name));
    }
  }
}

}  // namespace kelvarin
