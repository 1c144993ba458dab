// What screen readers find on the canvas: a child for each action, with its name, type, state and
// links, and one for each note.
//
// Used by: canvas_view.h.
// Threads: the user-interface thread.
#pragma once

namespace kelvarin {

// Once for the process is enough; further calls do nothing.
void installCanvasAccessibility();

}  // namespace kelvarin
