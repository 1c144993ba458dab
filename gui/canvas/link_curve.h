// One link on the canvas: a curve from an output pin to an input pin, with the number of its rows.
//
// Used by: canvas_scene.h. The curve that is being drawn is one of gestures (draft_curve.h).
#pragma once

#include <QGraphicsItem>
#include <QPainterPath>
#include <QPolygonF>

#include "gui/canvas/canvas_scene.h"

namespace kelvarin {

// From left to right, leaving and entering pins horizontally.
QPainterPath curveBetween(QPointF from, QPointF to);

class LinkCurve final : public QGraphicsItem {
 public:
  enum { Type = UserType + 2 };

  LinkCurve(CanvasScene& scene, LinkId id);
  ~LinkCurve() override;

  int type() const override { return Type; }
  LinkId id() const { return m_link.id; }
  const DrawnLink& link() const { return m_link; }
  // From the graph, and from where the boxes are.
  void read();
  void follow();
  double distanceTo(QPointF point) const;
  // Below 0: unknown. `heat` is the share of the largest number of rows, below 0 for no heat map.
  void setRows(long long rows, double heat);
  void setSelected(bool isSelected);
  void setLit(bool isLit);

  QRectF boundingRect() const override { return m_bounds; }
  void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

 private:
  class RowsLabel;
  QPen pen(double scale) const;
  void paintLines(QPainter& painter, const QRectF& seen) const;
  void paintBrokenMark(QPainter& painter) const;
  double width() const;

  CanvasScene& m_scene;
  DrawnLink m_link;
  QPainterPath m_path;
  QPolygonF m_points;  // of the path, for distances and for what is seen from far away
  QRectF m_bounds;
  QPointF m_middle;
  long long m_rows = -1;
  double m_heat = -1.0;
  bool m_isSelected = false;
  bool m_isLit = false;
  RowsLabel* m_label = nullptr;  // a child of the scene, above the boxes
};

}  // namespace kelvarin
