// A small picture of the whole canvas with the part that is seen, to move about in graphs of more
// than 50 actions.
//
// Used by: windows with a canvas, in whose corner it lies.
// Threads: the user-interface thread.
#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace kelvarin {

class CanvasView;

class Minimap : public QWidget {
  Q_OBJECT

 public:
  // Follows the canvas; shows itself only while the graph has more than 50 actions.
  explicit Minimap(CanvasView& canvas);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void adapt();
  void draw();
  void moveCanvasTo(QPointF position);
  QTransform toCanvas() const;

  CanvasView& m_canvas;
  QPixmap m_picture;
  QRectF m_area;  // of the canvas that the picture shows
  QTimer m_timer;
};

}  // namespace kelvarin
