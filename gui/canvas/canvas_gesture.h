// What a user does with the pressed mouse: each gesture shows what it would do, and changes the
// graph at its end only, so that it can be given up at any time.
//
// Used by: canvas_view.h.
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QPoint>
#include <QPointF>

#include "gui/document/graph_commands.h"

namespace kelvarin {

class CanvasScene;
class CanvasView;

class CanvasGesture {
 public:
  CanvasGesture() = default;
  virtual ~CanvasGesture() = default;
  CanvasGesture(const CanvasGesture&) = delete;
  CanvasGesture& operator=(const CanvasGesture&) = delete;

  // The pointer is here now, on the canvas.
  virtual void moveTo(QPointF point, Qt::KeyboardModifiers modifiers) = 0;
  // The button was released; nothing else is called after it.
  virtual void finish(QPoint globalPosition) = 0;
  virtual void cancel() = 0;
};

// What gestures work with; all of it outlives them.
struct GestureParts {
  CanvasView& view;
  CanvasScene& scene;
  GraphCommands& commands;
};

// Moves what is selected, in line with others or on the grid; Alt moves it freely. One action
// without links goes into the link on which it is dropped.
std::unique_ptr<CanvasGesture> startMove(const GestureParts& parts, QPointF start);
// Draws a link from an output or to an input pin; from an input pin that is taken, the end of its
// link is moved.
std::unique_ptr<CanvasGesture> startLink(const GestureParts& parts, const PinRef& pin);
// Selects what the rectangle touches, in addition to what was selected if so wished.
std::unique_ptr<CanvasGesture> startBand(const GestureParts& parts, QPointF start, bool adds);
std::unique_ptr<CanvasGesture> startNoteResize(const GestureParts& parts, NoteId note,
                                               QPointF start);

}  // namespace kelvarin
