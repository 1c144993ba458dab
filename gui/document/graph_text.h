// The text of a graph that is edited, and what a text says about it.
//
// Used by: edited_graph.cpp, edited_graph_loading.cpp.
#pragma once

#include "gui/document/edited_graph_parts.h"

namespace kelvarin {

QByteArray graphText(const EditedGraph::Parts& parts);
// An element.
QString parameterText(const DrawnParameter& parameter);
// Of a graph without anything in it.
QByteArray newGraphText();
// Of a piece of the graph.
QByteArray graphText(const EditedGraph& graph, const GraphSelection& selection);

}  // namespace kelvarin
