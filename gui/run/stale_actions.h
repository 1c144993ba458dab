// Which actions would give other rows than in the last run: those that were changed since, and all
// below them.
//
// What is undone is not changed any more.
// Used by: graph_run.cpp.
// Threads: the user-interface thread.
#pragma once

#include <QHash>
#include <QSet>

#include "gui/document/row_dependencies.h"

namespace kelvarin {

class StaleActions {
 public:
  // The graph outlives it.
  explicit StaleActions(const EditedGraph& graph) : m_graph(graph) {}

  // Nothing is stale from now on.
  void takeSnapshot();
  // Its settings, whether it is disabled, or the links into it may have changed.
  void noteChange(ActionId action);
  void noteParameters();

  const QSet<ActionId>& changed() const { return m_changed; }
  QSet<ActionId> withThoseBelow() const;

 private:
  const EditedGraph& m_graph;
  QHash<ActionId, ActionDependencies> m_snapshot;
  QList<DrawnParameter> m_parameters;
  bool m_haveParametersChanged = false;
  QSet<ActionId> m_changed;
};

}  // namespace kelvarin
