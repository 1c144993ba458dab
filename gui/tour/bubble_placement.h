// Where a bubble goes beside what it points at.
//
// Used by: tour_bubble.cpp. Plain values.
#pragma once

#include <QRect>

namespace kelvarin {

struct BubblePlacement {
  enum class Side { none, below, above, right, left };  // of the target, where the bubble is

  QRect rectangle;  // without the arrow
  Side side = Side::none;
  QPoint tip;  // of the arrow, at the edge of the target
};

// On the first side with enough space inside of `window`: below, above, then in the direction of
// reading. A target that is absent, or leaves no space, has the bubble in the middle.
BubblePlacement bubbleBeside(const QRect& window, const QRect& target, QSize bubble, int arrow,
                             Qt::LayoutDirection direction);

}  // namespace kelvarin
