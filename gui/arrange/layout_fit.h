// Brings a computed layout onto the canvas: where the boxes were, on the grid, beside the boxes
// that stay.
//
// Used by: arrangement.h.
#pragma once

#include <QHash>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include "gui/document/graph_parts.h"

namespace kelvarin {

// `corner` is where the top left corner of all boxes was. Where they would lie on one of `others`,
// all of them go further down.
QHash<ActionId, QPointF> fittedLayout(const QHash<ActionId, QPointF>& layout,
                                      const QHash<ActionId, QSizeF>& sizes, QPointF corner,
                                      const QList<QRectF>& others);

}  // namespace kelvarin
