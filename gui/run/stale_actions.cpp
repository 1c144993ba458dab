#include "gui/run/stale_actions.h"

#include "gui/run/downstream.h"

namespace kelvarin {

void StaleActions::takeSnapshot() {
  m_snapshot.clear();
  m_changed.clear();
  m_parameters = m_graph.parameters();
  m_haveParametersChanged = false;
  for (const ActionId action : m_graph.actions()) {
    m_snapshot.insert(action, dependenciesOf(m_graph, action));
  }
}

void StaleActions::noteChange(ActionId action) {
  const auto before = m_snapshot.constFind(action);
  if (m_graph.hasAction(action) && before != m_snapshot.constEnd() &&
      *before == dependenciesOf(m_graph, action)) {
    m_changed.remove(action);
  } else {
    m_changed.insert(action);
  }
}

void StaleActions::noteParameters() {
  m_haveParametersChanged = m_graph.parameters() != m_parameters;
}

QSet<ActionId> StaleActions::withThoseBelow() const {
  const QList<ActionId> all = m_graph.actions();
  if (m_haveParametersChanged) {
    return {all.begin(), all.end()};
  }
  return withDownstream(m_graph, m_changed);
}

}  // namespace kelvarin
