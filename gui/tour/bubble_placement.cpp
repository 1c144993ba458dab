#include "gui/tour/bubble_placement.h"

#include <algorithm>
#include <initializer_list>

namespace kelvarin {

namespace {

using Side = BubblePlacement::Side;

QPoint tipOf(const QRect& target, Side side) {
  switch (side) {
    case Side::below:
      return {target.center().x(), target.bottom() + 1};
    case Side::above:
      return {target.center().x(), target.top()};
    case Side::right:
      return {target.right() + 1, target.center().y()};
    case Side::left:
      return {target.left(), target.center().y()};
    case Side::none:
      break;
  }
  return target.center();
}

QRect besideTip(QPoint tip, Side side, QSize bubble, int arrow) {
  const QPoint middle(bubble.width() / 2, bubble.height() / 2);
  switch (side) {
    case Side::below:
      return {QPoint(tip.x() - middle.x(), tip.y() + arrow), bubble};
    case Side::above:
      return {QPoint(tip.x() - middle.x(), tip.y() - arrow - bubble.height()), bubble};
    case Side::right:
      return {QPoint(tip.x() + arrow, tip.y() - middle.y()), bubble};
    case Side::left:
      return {QPoint(tip.x() - arrow - bubble.width(), tip.y() - middle.y()), bubble};
    case Side::none:
      break;
  }
  return {tip - middle, bubble};
}

// Along the edge of the target it may move, away from it not.
QRect movedInto(const QRect& window, QRect rectangle) {
  rectangle.moveLeft(
      std::max(window.left(), std::min(rectangle.left(), window.right() + 1 - rectangle.width())));
  rectangle.moveTop(
      std::max(window.top(), std::min(rectangle.top(), window.bottom() + 1 - rectangle.height())));
  return rectangle;
}

}  // namespace

BubblePlacement bubbleBeside(const QRect& window, const QRect& target, QSize bubble, int arrow,
                             Qt::LayoutDirection direction) {
  const bool isMirrored = direction == Qt::RightToLeft;
  const QRect seen = target.intersected(window);
  if (!seen.isEmpty()) {
    for (const Side side : {Side::below, Side::above, isMirrored ? Side::left : Side::right,
                            isMirrored ? Side::right : Side::left}) {
      const QPoint tip = tipOf(seen, side);
      const QRect rectangle = movedInto(window, besideTip(tip, side, bubble, arrow));
      if (window.contains(rectangle) && !rectangle.intersects(seen)) {
        return {rectangle, side, tip};
      }
    }
  }
  return {movedInto(window, besideTip(window.center(), Side::none, bubble, 0)), Side::none, {}};
}

}  // namespace kelvarin
