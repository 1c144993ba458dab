#include "gui/canvas/link_curve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QFontMetricsF>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include "gui/canvas/action_box.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

constexpr double kStubLength = 56.0;  // of a link whose other end does not exist
constexpr int kPointCount = 17;
constexpr double kSmoothScale = 0.4;
constexpr double kLabelScale = 0.5;
constexpr double kWidth = 2.0;
constexpr double kHeatWidth = 7.0;         // that of the most rows has more
constexpr double kOutstandingWidth = 1.5;  // what is selected has more
constexpr double kMarkSize = 16.0;

double distanceToLine(QPointF point, QPointF from, QPointF to) {
  const QPointF along = to - from;
  const double squared = QPointF::dotProduct(along, along);
  const double share =
      squared == 0.0 ? 0.0
                     : std::clamp(QPointF::dotProduct(point - from, along) / squared, 0.0, 1.0);
  const QPointF way = point - from - share * along;
  return std::hypot(way.x(), way.y());
}

}  // namespace

QPainterPath curveBetween(QPointF from, QPointF to) {
  const double distance = std::hypot(to.x() - from.x(), to.y() - from.y());
  const double ahead = to.x() - from.x();
  const double reach = ahead >= 0 ? std::clamp(ahead / 2, std::min(24.0, distance / 2), 160.0)
                                  : std::clamp(-ahead, 48.0, 200.0);
  QPainterPath path(from);
  path.cubicTo(from + QPointF(reach, 0), to - QPointF(reach, 0), to);
  return path;
}

// The number of rows, above boxes, so that it can be read on a short link, too.
class LinkCurve::RowsLabel final : public QGraphicsItem {
 public:
  explicit RowsLabel(CanvasScene& scene) : m_scene(scene) {
    setZValue(3);
    scene.addItem(this);
  }

  void show(const QString& text, QPointF middle) {
    if (m_text != text || pos() != middle) {
      prepareGeometryChange();
      m_text = text;
      setPos(middle);
      const QFontMetricsF metrics(m_scene.metrics().textFont());
      const double width = metrics.horizontalAdvance(text) + 8;
      m_area = {-width / 2, -metrics.height() - 5, width, metrics.height()};
      update();
    }
  }
  QRectF boundingRect() const override { return m_area; }
  void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override {
    const double scale =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (scale < kLabelScale || m_scene.pinFilter()) {
      return;
    }
    QColor background = m_scene.colors().background;
    background.setAlpha(220);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(background);
    painter->drawRoundedRect(m_area, 4, 4);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(m_scene.colors().text);
    painter->setFont(m_scene.metrics().textFont());
    painter->drawText(m_area, Qt::AlignCenter, m_text);
  }

 private:
  CanvasScene& m_scene;
  QString m_text;
  QRectF m_area;
};

LinkCurve::LinkCurve(CanvasScene& scene, LinkId id) : m_scene(scene) {
  m_link.id = id;
  setZValue(1);
  read();
}

LinkCurve::~LinkCurve() {
  delete m_label;
}

void LinkCurve::read() {
  m_link = m_scene.graph().link(m_link.id);
  follow();
}

void LinkCurve::follow() {
  prepareGeometryChange();
  const ActionBox* above = m_scene.box(m_link.from);
  const ActionBox* below = m_scene.box(m_link.to);
  m_path = {};
  m_points.clear();
  m_bounds = {};
  setVisible(above != nullptr || below != nullptr);
  if (!isVisible()) {
    return;
  }
  const QPointF stub(kStubLength, 0);
  const QPointF from = above != nullptr ? above->pinPosition(m_link.fromPin, true)
                                        : below->pinPosition(m_link.toPin, false) - stub;
  const QPointF to = below != nullptr ? below->pinPosition(m_link.toPin, false)
                                      : above->pinPosition(m_link.fromPin, true) + stub;
  m_path = curveBetween(from, to);
  m_points.reserve(kPointCount);
  for (int i = 0; i < kPointCount; ++i) {
    m_points.append(m_path.pointAtPercent(i / (kPointCount - 1.0)));
  }
  m_middle = m_points[kPointCount / 2];
  const double margin = kMarkSize / 2 + 2;
  m_bounds = m_path.controlPointRect().adjusted(-margin, -margin, margin, margin);
  setRows(m_rows, m_heat);
  update();
}

double LinkCurve::distanceTo(QPointF point) const {
  double least = std::numeric_limits<double>::max();
  for (qsizetype i = 1; i < m_points.size(); ++i) {
    least = std::min(least, distanceToLine(point, m_points[i - 1], m_points[i]));
  }
  return least;
}

void LinkCurve::setRows(long long rows, double heat) {
  if (heat != m_heat) {
    prepareGeometryChange();
    m_heat = heat;
    update();
  }
  m_rows = rows;
  if (rows < 0) {
    delete m_label;
    m_label = nullptr;
    return;
  }
  if (m_label == nullptr) {
    m_label = new RowsLabel(m_scene);
  }
  m_label->show(groupedCount(rows), m_middle);
}

void LinkCurve::setSelected(bool isSelected) {
  if (m_isSelected != isSelected) {
    m_isSelected = isSelected;
    update();
  }
}

void LinkCurve::setLit(bool isLit) {
  if (m_isLit != isLit) {
    m_isLit = isLit;
    update();
  }
}

double LinkCurve::width() const {
  const double plain = m_heat < 0 ? kWidth : kWidth + kHeatWidth * m_heat;
  return m_isSelected || m_isLit ? plain + kOutstandingWidth : plain;
}

QPen LinkCurve::pen(double scale) const {
  const CanvasColors& colors = m_scene.colors();
  const bool isBroken = !m_link.whyBroken.isEmpty();
  const bool standsOut = m_isSelected || m_isLit;
  const QColor color = standsOut  ? colors.accent
                       : isBroken ? colors.error
                       : m_heat < 0
                           ? colors.link
                           : mixed(colors.link, colors.error, std::clamp(m_heat, 0.0, 1.0));
  if (scale < kSmoothScale) {
    QPen thin(color, standsOut ? 2.0 : 1.0, isBroken ? Qt::DashLine : Qt::SolidLine);
    thin.setCosmetic(true);
    return thin;
  }
  return {color, width(), isBroken ? Qt::DashLine : Qt::SolidLine, Qt::FlatCap};
}

void LinkCurve::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
  const double scale =
      QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
  painter->setPen(pen(scale));
  painter->setBrush(Qt::NoBrush);
  if (scale < kSmoothScale) {
    painter->drawPolyline(m_points);
    return;
  }
  painter->setRenderHint(QPainter::Antialiasing);
  painter->drawPath(m_path);
  if (!m_link.whyBroken.isEmpty()) {
    const QRectF area(m_middle.x() - kMarkSize / 2, m_middle.y() - kMarkSize / 2, kMarkSize,
                      kMarkSize);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_scene.colors().background);
    painter->drawEllipse(area);
    drawStateMark(*painter, area.marginsRemoved({2, 2, 2, 2}), StateMark::failed,
                  m_scene.colors().error);
  }
  painter->setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace kelvarin
