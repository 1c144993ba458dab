// Where the keyboard goes from one action to the next: along links, among siblings, and in the
// order of reading.
#pragma once

#include "gui/canvas/canvas_scene.h"

namespace kelvarin {

enum class WalkDirection { left, right, up, down };

// Left and right follow links, and go to the nearest box where there is none; up and down go to
// the nearest box of the column. kNoId when there is none.
ActionId nextAction(const CanvasScene& scene, ActionId from, WalkDirection direction);
// Row by row, from left to right.
QList<ActionId> readingOrder(const CanvasScene& scene);

}  // namespace kelvarin
