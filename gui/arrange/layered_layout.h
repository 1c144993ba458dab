// Lays boxes out in layers from left to right, with Graphviz: parts that nothing links are below
// one another, single boxes in rows below all others.
//
// Used by: the program kelvarin-arrange. Graphviz has global state, cannot be interrupted and ends
// its process at internal faults, so nothing else calls it.
// Errors: false when Graphviz refuses.
#pragma once

#include "gui/arrange/layout_text.h"

namespace kelvarin {

bool layeredLayout(const LayoutGraph& graph, std::vector<LayoutPosition>& positions);

}  // namespace kelvarin
