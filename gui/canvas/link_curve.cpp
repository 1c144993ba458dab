#include "gui/canvas/link_curve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QVarLengthArray>

#include "gui/canvas/action_box.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

constexpr double kStubLength = 56.0;  // of a link whose other end does not exist
constexpr double kMaximumReach = 160.0;
constexpr int kMinimumPoints = 17;
constexpr int kMaximumPoints = 33;
constexpr double kLineLength = 12.0;  // of the lines that a curve is made of
constexpr double kCurveScale = 1.25;  // above it, the lines could be seen
constexpr double kNearScale = 0.7;    // short curves are smooth above it
constexpr double kShortLength = 400.0;
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

// Of a path with one curve; QPainterPath looks for points by their length, which takes long.
QPointF pointOfCurve(const QPainterPath& path, double t) {
  const QPointF start = path.elementAt(0);
  const QPointF one = path.elementAt(1);
  const QPointF two = path.elementAt(2);
  const QPointF end = path.elementAt(3);
  const double u = 1.0 - t;
  return u * u * u * start + 3 * u * u * t * one + 3 * u * t * t * two + t * t * t * end;
}

}  // namespace

QPainterPath curveBetween(QPointF from, QPointF to) {
  const double distance = std::hypot(to.x() - from.x(), to.y() - from.y());
  const double back = std::max(0.0, from.x() - to.x());
  const double reach = std::min(distance / 2.5 + back / 4, kMaximumReach);
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

  // The text is made when it is seen: in a run, all counts change many times a second.
  void show(long long rows, QPointF middle) {
    setPos(middle);
    if (m_rows == rows) {
      return;
    }
    m_rows = rows;
    const int digits = static_cast<int>(std::log10(std::max(rows, 1LL))) + 1;
    if (digits != m_digits) {
      prepareGeometryChange();
      m_digits = digits;
      const CanvasMetrics& metrics = m_scene.metrics();
      const int separators = (digits - 1) / 3;
      const double width = (digits + separators * 0.6) * metrics.digitWidth() + 8;
      m_area = {-width / 2, -metrics.lineHeight() - 5, width, metrics.lineHeight()};
    }
    update();
  }
  QRectF boundingRect() const override { return m_area; }
  void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override {
    const double scale =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (scale < kLabelScale || m_scene.pinFilter()) {
      return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_scene.colors().background);
    painter->drawRoundedRect(m_area, 4, 4);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(m_scene.colors().text);
    painter->setFont(m_scene.metrics().textFont());
    painter->drawText(m_area, Qt::AlignCenter, groupedCount(m_rows));
  }

 private:
  CanvasScene& m_scene;
  long long m_rows = -1;
  int m_digits = 0;
  QRectF m_area;
};

LinkCurve::LinkCurve(CanvasScene& scene, LinkId id) : m_scene(scene) {
  m_link.id = id;
  setZValue(1);
  setFlag(ItemUsesExtendedStyleOption);
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
  // Beside the name of the pin, where it has one.
  const PinRef source{m_link.from, m_link.fromPin, true};
  const bool isNamed = above != nullptr && !m_scene.graph().pinName(source).isEmpty();
  m_middle = pointOfCurve(m_path, isNamed ? 0.65 : 0.5);
  const double distance = std::hypot(to.x() - from.x(), to.y() - from.y());
  const int count =
      from.y() == to.y() && from.x() <= to.x()
          ? 2
          : std::clamp(static_cast<int>(distance / kLineLength), kMinimumPoints, kMaximumPoints);
  m_points.reserve(count);
  for (int i = 0; i < count; ++i) {
    m_points.append(pointOfCurve(m_path, i / (count - 1.0)));
  }
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
  m_label->show(rows, m_middle);
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
  const bool standsOut = (m_isSelected || m_isLit) && !m_scene.isPlain();
  const QColor color = standsOut  ? colors.accent
                       : isBroken ? colors.error
                       : m_heat < 0
                           ? colors.link
                           : mixed(colors.link, colors.warning, std::clamp(m_heat, 0.0, 1.0));
  if (scale < kSmoothScale) {
    QPen thin(color, standsOut ? 2.0 : 1.0, isBroken ? Qt::DashLine : Qt::SolidLine);
    thin.setCosmetic(true);
    return thin;
  }
  return {color, width(), isBroken ? Qt::DashLine : Qt::SolidLine, Qt::FlatCap};
}

// Line by line, and only those that are seen: a long stroked curve takes ten times as long.
void LinkCurve::paintLines(QPainter& painter, const QRectF& seen) const {
  QVarLengthArray<QLineF, kMaximumPoints> lines;
  for (qsizetype i = 1; i < m_points.size(); ++i) {
    const QLineF line(m_points[i - 1], m_points[i]);
    const QRectF area = QRectF(line.p1(), line.p2()).normalized().adjusted(-8, -8, 8, 8);
    if (area.intersects(seen)) {
      lines.append(line);
    }
  }
  painter.drawLines(lines.constData(), static_cast<int>(lines.size()));
}

void LinkCurve::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*) {
  const double scale =
      QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
  const bool isBroken = !m_link.whyBroken.isEmpty();
  painter->setPen(pen(scale));
  painter->setBrush(Qt::NoBrush);
  painter->setRenderHint(QPainter::Antialiasing, scale >= kSmoothScale);
  const bool isShort = m_bounds.width() + m_bounds.height() < kShortLength;
  const bool isSmooth = scale > kCurveScale || m_scene.isPlain() ||
                        (isShort && scale >= kNearScale) || (isBroken && scale >= kSmoothScale);
  if (isSmooth) {
    painter->drawPath(m_path);
  } else {
    paintLines(*painter, option->exposedRect);
  }
  if (isBroken && scale >= kSmoothScale) {
    paintBrokenMark(*painter);
  }
  painter->setRenderHint(QPainter::Antialiasing, false);
}

void LinkCurve::paintBrokenMark(QPainter& painter) const {
  const QRectF area(m_middle.x() - kMarkSize / 2, m_middle.y() - kMarkSize / 2, kMarkSize,
                    kMarkSize);
  painter.setPen(Qt::NoPen);
  painter.setBrush(m_scene.colors().background);
  painter.drawEllipse(area);
  drawStateMark(painter, area.marginsRemoved({2, 2, 2, 2}), StateMark::failed,
                m_scene.colors().error);
}

}  // namespace kelvarin
