// Says in a corner of the canvas what the colours of the heat map mean; hidden while there is none.
//
// Used by: windows with a canvas.
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

namespace kelvarin {

class CanvasView;

class HeatLegend : public QWidget {
  Q_OBJECT

 public:
  // Follows the canvas.
  explicit HeatLegend(CanvasView& canvas);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void adapt();
  QString title() const;

  CanvasView& m_canvas;
};

}  // namespace kelvarin
