// Where boxes that are moved come to rest: in line with edges and middles of others, else on the
// grid.
#pragma once

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRectF>

namespace kelvarin {

struct SnappedMove {
  QPointF offset;
  QList<QLineF> guides;  // the lines with which it is aligned now
};

// `moved` is the area as it was before the move by `offset`; `others` are the boxes around.
SnappedMove snappedMove(const QRectF& moved, QPointF offset, const QList<QRectF>& others,
                        double tolerance);

}  // namespace kelvarin
