#include "gui/canvas/link_targets.h"

namespace kelvarin {

LinkTargets::LinkTargets(const EditedGraph& graph, const PinRef& start) : m_start(start) {
  QList<ActionId> waiting{start.action};
  m_excluded.insert(start.action);
  while (!waiting.isEmpty()) {
    const ActionId action = waiting.takeLast();
    for (const LinkId id : graph.linksOf(action)) {
      const DrawnLink& link = graph.link(id);
      const ActionId next = start.isOutput ? link.from : link.to;
      if (next != action && link.whyBroken.isEmpty() && !m_excluded.contains(next)) {
        m_excluded.insert(next);
        waiting.append(next);
      }
    }
  }
}

bool LinkTargets::accepts(const PinRef& end) const {
  return end.isOutput != m_start.isOutput && !m_excluded.contains(end.action);
}

}  // namespace kelvarin
