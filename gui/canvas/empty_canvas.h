// What an empty canvas says: how to begin.
//
// Used by: windows with a canvas, over which it lies; clicks and drops go through to the canvas.
// Threads: the user-interface thread.
#pragma once

#include "host/widgets/empty_state.h"

namespace kelvarin {

class CanvasView;

class EmptyCanvas : public EmptyState {
  Q_OBJECT

 public:
  // Follows the canvas; shows itself only while there is nothing on it.
  explicit EmptyCanvas(CanvasView& canvas);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void adapt();

  CanvasView& m_canvas;
};

}  // namespace kelvarin
