// What lies below actions of the graph that is open.
//
// Used by: stale_actions.cpp, design_columns.cpp.
// Threads: the user-interface thread.
#pragma once

#include <QSet>

#include "gui/document/edited_graph.h"

namespace kelvarin {

// `actions`, and all that get rows from them along whole links.
QSet<ActionId> withDownstream(const EditedGraph& graph, QSet<ActionId> actions);

}  // namespace kelvarin
