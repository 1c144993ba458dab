// Where commands put actions on the canvas, and what is above an action.
//
// Used by: graph_commands*.cpp, gui/drops.
#pragma once

#include "gui/document/edited_graph.h"

namespace kelvarin {

// Positions are saved as whole numbers.
QPointF onGrid(QPointF position);
QRectF onGrid(const QRectF& rectangle);
// At the right of an output pin, at the left of an input pin, where no action is.
QPointF freePositionBeside(const EditedGraph& graph, const PinRef& pin);
// At the position, or below it, where no action is.
QPointF freePositionBelow(const EditedGraph& graph, QPointF position);
// Where actions go so that another one fits into the link: what is behind the link
// goes to the right. Empty where it fits already, or the link does not go from left to right.
QHash<ActionId, QPointF> positionsWithSpace(const EditedGraph& graph, const DrawnLink& link);
// What the action reads from on its first linked pin, passing over those that are `removed`.
PinRef sourceAbove(const EditedGraph& graph, ActionId action, const QSet<ActionId>& removed);
// "Delete 'late?'"
QString removalText(const EditedGraph& graph, const GraphSelection& selection);

}  // namespace kelvarin
