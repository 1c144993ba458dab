// What the mouse was pressed on, until it has moved far enough to be a gesture.
//
// Used by: canvas_view.h.
#pragma once

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"

namespace kelvarin {

struct CanvasView::Press {
  QPoint position;  // on the viewport
  QPointF point;    // on the canvas
  CanvasHit hit;
  Qt::KeyboardModifiers modifiers;
  // A click on one of several that are selected selects it alone, but only if nothing is moved.
  bool selectsAloneAtRelease = false;
};

}  // namespace kelvarin
