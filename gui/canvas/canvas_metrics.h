// How large boxes are and where their pins are: everything in logical pixels of the canvas.
//
// Used by: the items of the canvas, and by layouts, which need the sizes of boxes.
#pragma once

#include <QFont>
#include <QPointF>
#include <QRectF>

namespace kelvarin {

// Boxes snap to multiples of it.
inline constexpr double kGridStep = 8.0;

class CanvasMetrics {
 public:
  // `font` is that of the application: boxes grow with it.
  explicit CanvasMetrics(const QFont& font);

  const QFont& textFont() const { return m_textFont; }
  const QFont& nameFont() const { return m_nameFont; }
  double lineHeight() const { return m_lineHeight; }
  double digitWidth() const { return m_digitWidth; }

  QSizeF boxSize(int pinsIn, int pinsOut) const;
  // From the top left corner of the box. The first pins of all boxes are at one height, so that a
  // chain of boxes in a row has straight links. Pins that the action does not have continue the
  // line, for broken links.
  QPointF pinOffset(int pin, bool isOutput) const;

  QRectF pictureArea() const;
  // Two lines beside the picture.
  QRectF nameArea() const;
  QRectF typeArea() const;
  QRectF statusArea(const QSizeF& box) const;
  // At the end of the line of the status: where a warning is marked.
  QRectF warningArea(const QSizeF& box) const;

 private:
  QFont m_textFont;
  QFont m_nameFont;
  double m_lineHeight = 0.0;
  double m_digitWidth = 0.0;
  double m_pictureSize = 0.0;
  double m_width = 0.0;
};

// The nearest point of the grid.
QPointF snappedToGrid(QPointF point);

}  // namespace kelvarin
