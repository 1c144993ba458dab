// Which pins can take a link that is being drawn: one walk along the links answers for all pins,
// where EditedGraph::refusal() walks for each, and then has the reason, too.
#pragma once

#include <QSet>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class LinkTargets {
 public:
  // As the graph is now.
  LinkTargets(const EditedGraph& graph, const PinRef& start);

  // Of a pin that exists.
  bool accepts(const PinRef& end) const;

 private:
  PinRef m_start;
  QSet<ActionId> m_excluded;  // links to them would close a cycle
};

}  // namespace kelvarin
