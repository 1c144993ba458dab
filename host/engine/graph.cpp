#include "host/engine/graph.h"

#include <algorithm>
#include <utility>

#include "host/contract/host_session.h"
#include "host/contract/log_details.h"
#include "host/engine/graph_links.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

bool isFirstPinLinked(const std::vector<GraphLink>& inputs) {
  return std::any_of(inputs.begin(), inputs.end(),
                     [](const GraphLink& link) { return link.toPin == 0; });
}

// A source says itself which of its pins it needs.
bool needsFirstPin(const ActionItem& item) {
  return item.inputPinCount() > 0 && item.endpoint() != ActionItem::Endpoint::reader;
}

void warn(const ActionItem& item, const QString& text, XMLNode::Position position = {}) {
  const CurrentAction onBehalf(&item);
  LogDetails details;
  details.elementPosition = position;
  logWithDetails(LogLevel::warning, text, details);
}

}  // namespace

bool isNoteColour(const QString& text) {
  const auto isHexadecimal = [](QChar digit) {
    return QLatin1String("0123456789abcdef").contains(digit.toLower());
  };
  const qsizetype digits = text.size() - 1;
  return text.startsWith(u'#') && (digits == 3 || digits == 6 || digits == 8) &&
         std::all_of(text.begin() + 1, text.end(), isHexadecimal);
}

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

const GraphLink* Graph::linkTo(const ActionItem& item, int pin) const {
  const int index = indexOf(item);
  const auto found = std::find_if(links.begin(), links.end(), [index, pin](const GraphLink& link) {
    return link.to == index && link.toPin == pin;
  });
  return found == links.end() ? nullptr : &*found;
}

void Graph::keepOnly(const std::vector<char>& isKept) {
  std::vector<int> newIndex;  // by the old one; -1: taken out
  std::vector<GraphAction> kept;
  for (std::size_t i = 0; i < actions.size(); ++i) {
    newIndex.push_back(isKept[i] != 0 ? static_cast<int>(kept.size()) : -1);
    if (isKept[i] != 0) {
      kept.push_back(std::move(actions[i]));
    }
  }
  actions = std::move(kept);
  for (GraphLink& link : links) {
    link.from = newIndex[at(link.from)];
    link.to = newIndex[at(link.to)];
  }
  std::erase_if(links, [](const GraphLink& link) { return link.from < 0 || link.to < 0; });
  for (GraphWarning& warning : warnings) {
    warning.action = newIndex[at(warning.action)];
  }
  std::erase_if(warnings, [](const GraphWarning& warning) { return warning.action < 0; });
}

void reportWarnings(const Graph& graph) {
  for (const GraphWarning& warning : graph.warnings) {
    warn(*graph.actions[at(warning.action)].item, warning.text, warning.position);
  }
  const GraphLinks links(graph);
  for (int i = 0; i < links.actionCount(); ++i) {
    const GraphAction& action = graph.actions[at(i)];
    if (!action.isDisabled && needsFirstPin(*action.item) && !isFirstPinLinked(links.to(i))) {
      warn(*action.item, engine_messages::firstPinNotLinked(action.name));
    }
  }
}

}  // namespace kelvarin
