#include "gui/canvas/alignment_guides.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "gui/canvas/canvas_metrics.h"

namespace kelvarin {

namespace {

constexpr double kGuideOverhang = 8.0;

struct Line {
  double correction = 0.0;
  double position = 0.0;
};

// `edges` takes the coordinates of one direction.
template <typename Edges>
std::optional<Line> nearestLine(const QRectF& moved, const QList<QRectF>& others, double tolerance,
                                Edges edges) {
  std::optional<Line> best;
  const auto own = edges(moved);
  for (const QRectF& other : others) {
    const auto theirs = edges(other);
    for (std::size_t i = 0; i < own.size(); ++i) {
      const double correction = theirs[i] - own[i];
      const double limit = best ? std::abs(best->correction) : tolerance;
      if (best ? std::abs(correction) < limit : std::abs(correction) <= limit) {
        best = Line{correction, theirs[i]};
      }
    }
  }
  return best;
}

std::array<double, 3> xEdges(const QRectF& area) {
  return {area.left(), area.center().x(), area.right()};
}

std::array<double, 3> yEdges(const QRectF& area) {
  return {area.top(), area.center().y(), area.bottom()};
}

template <std::size_t count>
bool hasEdge(const std::array<double, count>& edges, double position) {
  return std::any_of(edges.begin(), edges.end(),
                     [position](double edge) { return std::abs(edge - position) < 0.01; });
}

// From the first to the last box on the line.
QLineF guide(const QRectF& moved, const QList<QRectF>& others, double position, bool isVertical) {
  QRectF reach = moved;
  for (const QRectF& other : others) {
    if (isVertical ? hasEdge(xEdges(other), position) : hasEdge(yEdges(other), position)) {
      reach |= other;
    }
  }
  return isVertical ? QLineF(position, reach.top() - kGuideOverhang, position,
                             reach.bottom() + kGuideOverhang)
                    : QLineF(reach.left() - kGuideOverhang, position,
                             reach.right() + kGuideOverhang, position);
}

}  // namespace

SnappedMove snappedMove(const QRectF& moved, QPointF offset, const QList<QRectF>& others,
                        double tolerance) {
  const QRectF wanted = moved.translated(offset);
  const QPointF onGrid = snappedToGrid(wanted.topLeft()) - moved.topLeft();
  const auto vertical = nearestLine(wanted, others, tolerance, xEdges);
  const auto horizontal = nearestLine(wanted, others, tolerance, yEdges);
  SnappedMove result{{vertical ? offset.x() + vertical->correction : onGrid.x(),
                      horizontal ? offset.y() + horizontal->correction : onGrid.y()},
                     {}};
  const QRectF rested = moved.translated(result.offset);
  if (vertical) {
    result.guides.append(guide(rested, others, vertical->position, true));
  }
  if (horizontal) {
    result.guides.append(guide(rested, others, horizontal->position, false));
  }
  return result;
}

}  // namespace kelvarin
