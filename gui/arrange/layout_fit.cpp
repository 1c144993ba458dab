#include "gui/arrange/layout_fit.h"

#include <algorithm>
#include <cmath>

namespace kelvarin {

namespace {

constexpr double kGrid = 8.0;
constexpr double kDistance = 24.0;  // to boxes that stay

double onGrid(double position) {
  return std::round(position / kGrid) * kGrid;
}

// How far all boxes have to go down until none lies on any of `others`.
double wayDown(const QList<QRectF>& boxes, const QList<QRectF>& others) {
  double way = 0.0;
  bool isFree = false;
  while (!isFree) {
    double further = 0.0;
    for (const QRectF& box : boxes) {
      const QRectF wanted =
          box.translated(0, way).adjusted(-kDistance, -kDistance, kDistance, kDistance);
      for (const QRectF& other : others) {
        if (wanted.intersects(other)) {
          further = std::max(further, other.bottom() - wanted.top());
        }
      }
    }
    isFree = further <= 0.0;
    way += std::ceil(further / kGrid) * kGrid;
  }
  return way;
}

}  // namespace

QHash<ActionId, QPointF> fittedLayout(const QHash<ActionId, QPointF>& layout,
                                      const QHash<ActionId, QSizeF>& sizes, QPointF corner,
                                      const QList<QRectF>& others) {
  QHash<ActionId, QPointF> fitted;
  QList<QRectF> boxes;
  for (auto at = layout.cbegin(); at != layout.cend(); ++at) {
    const QPointF position(onGrid(corner.x() + at->x()), onGrid(corner.y() + at->y()));
    fitted.insert(at.key(), position);
    boxes.append({position, sizes.value(at.key())});
  }
  const double way = wayDown(boxes, others);
  for (QPointF& position : fitted) {
    position.ry() += way;
  }
  return fitted;
}

}  // namespace kelvarin
