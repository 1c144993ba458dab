#include "gui/run/downstream.h"

namespace kelvarin {

QSet<ActionId> withDownstream(const EditedGraph& graph, QSet<ActionId> actions) {
  QList<ActionId> open(actions.begin(), actions.end());
  while (!open.isEmpty()) {
    const ActionId action = open.takeLast();
    const QList<LinkId> links = graph.hasAction(action) ? graph.linksOf(action) : QList<LinkId>();
    for (const LinkId id : links) {
      const DrawnLink& link = graph.link(id);
      if (link.from == action && link.whyBroken.isEmpty() && !actions.contains(link.to)) {
        actions.insert(link.to);
        open += link.to;
      }
    }
  }
  return actions;
}

}  // namespace kelvarin
