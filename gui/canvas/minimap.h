// A small picture of the whole canvas with the part that is seen, to move about in graphs of more
// than 50 actions.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

namespace kelvarin {

class CanvasView;

class Minimap : public QWidget {
  Q_OBJECT

 public:
  // Follows the canvas; shows itself only while the graph has more than 50 actions.
  explicit Minimap(CanvasView& canvas);

  QSize sizeHint() const override;
};

}  // namespace kelvarin
