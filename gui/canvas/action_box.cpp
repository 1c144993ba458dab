#include "gui/canvas/action_box.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include "gui/canvas/text_lines.h"

namespace kelvarin {

namespace {

constexpr double kCorner = 6.0;
constexpr double kPinRadius = 5.0;
constexpr double kLitPinRadius = 7.5;
constexpr double kMargin = 12.0;  // for pins, marks and the outline of what is selected
constexpr double kPinNameGap = 8.0;
constexpr double kMarkGap = 4.0;
// Below these scales there is no use in drawing texts, or anything but the outline.
constexpr double kTextScale = 0.5;
constexpr double kNameScale = 0.24;
// What a name is drawn with when everything else is too small to be read.
constexpr double kFarNamePixels = 9.0;
constexpr double kDimmed = 0.35;

}  // namespace

ActionBox::ActionBox(CanvasScene& scene, ActionId id) : m_scene(scene), m_id(id) {
  setZValue(2);
  setFlag(ItemUsesExtendedStyleOption, false);
  read();
}

void ActionBox::read() {
  const EditedGraph& graph = m_scene.graph();
  m_name = graph.name(m_id);
  m_typeName = graph.typeName(m_id);
  for (const bool isOutput : {false, true}) {
    QStringList& names = isOutput ? m_outputs : m_inputs;
    names.clear();
    for (int pin = 0; pin < graph.pinCount(m_id, isOutput); ++pin) {
      names.append(graph.pinName({m_id, pin, isOutput}));
    }
  }
  m_isDisabled = graph.isDisabled(m_id);
  m_canRun = graph.whyCannotRun(m_id).isEmpty();
  m_hasStatus = false;
  setPos(graph.position(m_id));
  measure();
}

void ActionBox::measure() {
  const CanvasMetrics& metrics = m_scene.metrics();
  const auto widest = [&metrics](const QStringList& names) {
    double width = 0.0;
    for (const QString& name : names) {
      if (!name.isEmpty()) {
        const double own = QFontMetricsF(metrics.textFont()).horizontalAdvance(name);
        width = std::max(width, own + kPinNameGap);
      }
    }
    return width;
  };
  prepareGeometryChange();
  m_size = metrics.boxSize(pinCount(false), pinCount(true));
  m_bounds =
      QRectF(QPointF(), m_size)
          .adjusted(-kMargin - widest(m_inputs), -kMargin, kMargin + widest(m_outputs), kMargin);
  m_hasTexts = false;
  update();
}

// Only for boxes that are seen: cutting texts takes more time than everything else about a box.
void ActionBox::cutTexts() {
  const CanvasMetrics& metrics = m_scene.metrics();
  m_nameLines = wrappedLines(m_name, metrics.nameFont(), metrics.nameArea().width(), 2);
  m_shownType = shortenedLine(m_typeName, metrics.textFont(), metrics.typeArea().width());
  const double marks = (m_state.hasWarning ? 2 : 1) * (metrics.lineHeight() + kMarkGap);
  const double statusWidth = metrics.statusArea(m_size).width() - marks;
  m_shownStatus = shortenedLine(m_heat.text.isEmpty() ? m_status.text : m_heat.text,
                                metrics.textFont(), statusWidth);
  m_hasTexts = true;
}

void ActionBox::setResult(const ActionState& state, const QString& problem,
                          const ActionHeat& heat) {
  if (m_state == state && m_problem == problem && m_heat == heat) {
    return;
  }
  m_state = state;
  m_problem = problem;
  m_heat = heat;
  m_hasStatus = false;
  m_hasTexts = false;
  update();
}

void ActionBox::setSelected(bool isSelected) {
  if (m_isSelected != isSelected) {
    m_isSelected = isSelected;
    update();
  }
}

void ActionBox::setHasFocusMark(bool has) {
  if (m_hasFocusMark != has) {
    m_hasFocusMark = has;
    update();
  }
}

QPointF ActionBox::pinPosition(int pin, bool isOutput) const {
  return pos() + m_scene.metrics().pinOffset(pin, isOutput);
}

PinRef ActionBox::pinNear(QPointF point, double distance) const {
  PinRef nearest{m_id, -1, true};
  double best = distance;
  for (const bool isOutput : {true, false}) {
    for (int pin = 0; pin < pinCount(isOutput); ++pin) {
      const QPointF way = pinPosition(pin, isOutput) - point;
      const double length = std::hypot(way.x(), way.y());
      if (length <= best) {
        best = length;
        nearest = {m_id, pin, isOutput};
      }
    }
  }
  return nearest;
}

bool ActionBox::takesDrawnLink() const {
  for (const bool isOutput : {true, false}) {
    for (int pin = 0; pin < pinCount(isOutput); ++pin) {
      if (m_scene.pinFilter()({m_id, pin, isOutput})) {
        return true;
      }
    }
  }
  return false;
}

void ActionBox::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
  const double scale =
      QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
  if (!m_hasStatus) {
    m_status = statusLine(m_scene.graph(), m_id, m_state, m_problem);
    m_hasStatus = true;
  }
  const bool isDimmed = m_scene.pinFilter() && !takesDrawnLink();
  const double opacity = painter->opacity();
  if (isDimmed) {
    painter->setOpacity(opacity * kDimmed);
  }
  if (scale < kNameScale) {
    paintSmall(*painter, scale);
  } else {
    painter->setRenderHint(QPainter::Antialiasing);
    paintBody(*painter, scale);
    paintTexts(*painter, scale);
    painter->setRenderHint(QPainter::Antialiasing, scale >= kTextScale);
    paintPins(*painter, scale);
    painter->setRenderHint(QPainter::Antialiasing, false);
  }
  if (isDimmed) {
    painter->setOpacity(opacity);
  }
}

QColor ActionBox::fill() const {
  const CanvasColors& colors = m_scene.colors();
  if (m_isDisabled) {
    return colors.boxDisabled;
  }
  return m_heat.share < 0 ? colors.box : colors.heat(m_heat.share);
}

QPen ActionBox::outline(double scale) const {
  const CanvasColors& colors = m_scene.colors();
  const double width = std::max(1.0, 1.0 / scale);
  if (m_isSelected && !m_scene.isPlain()) {
    return {colors.accent, 2.5 * width};
  }
  if (!m_canRun) {
    return {colors.error, 1.5 * width, Qt::DashLine};
  }
  if (m_state.kind == ActionState::Kind::failed || !m_problem.isEmpty()) {
    return {colors.error, 1.5 * width};
  }
  return {colors.border, width, m_isDisabled ? Qt::DashLine : Qt::SolidLine};
}

// Seen from far away: its outline, and a stripe for the state.
void ActionBox::paintSmall(QPainter& painter, double scale) const {
  painter.setPen(outline(scale));
  painter.setBrush(fill());
  painter.drawRect(QRectF(QPointF(), m_size));
  if (m_status.mark != StateMark::none) {
    const double height = m_size.height() / 4;
    painter.fillRect(
        QRectF(0, m_size.height() - height, m_size.width(), height),
        m_problem.isEmpty() ? m_scene.colors().ofState(m_state.kind) : m_scene.colors().error);
  }
  if (m_status.mark == StateMark::failed) {
    painter.setPen(QPen(m_scene.colors().error, 1.0 / scale));
    painter.drawLine(QPointF(), QPointF(m_size.width(), m_size.height()));
    painter.drawLine(QPointF(m_size.width(), 0), QPointF(0, m_size.height()));
  }
}

void ActionBox::paintBody(QPainter& painter, double scale) const {
  const CanvasColors& colors = m_scene.colors();
  const QRectF body(QPointF(), m_size);
  if (m_hasFocusMark && !m_scene.isPlain()) {
    painter.setPen(QPen(colors.text, 1.0 / std::min(scale, 1.0), Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(body.adjusted(-5, -5, 5, 5), kCorner + 4, kCorner + 4);
  }
  painter.setPen(outline(scale));
  painter.setBrush(fill());
  painter.drawRoundedRect(body, kCorner, kCorner);
  if (m_isDisabled) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(mixed(colors.boxDisabled, colors.text, 0.12), Qt::BDiagPattern));
    painter.drawRoundedRect(body, kCorner, kCorner);
  }
}

void ActionBox::paintTexts(QPainter& painter, double scale) {
  const CanvasMetrics& metrics = m_scene.metrics();
  const CanvasColors& colors = m_scene.colors();
  painter.setPen(m_isDisabled ? colors.faintText : colors.text);
  if (scale < kTextScale) {
    paintFarName(painter, scale);
    return;
  }
  if (!m_hasTexts) {
    cutTexts();
  }
  const QRectF pictureArea = metrics.pictureArea();
  const double devicePixels = pictureArea.width() * scale * painter.device()->devicePixelRatioF();
  const QPixmap& picture = m_scene.pictures().picture(m_scene.graph().action(m_id), devicePixels);
  if (!picture.isNull()) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(pictureArea, picture, QRectF(picture.rect()));
  }
  paintName(painter);
  painter.setFont(metrics.textFont());
  painter.setPen(m_heat.share < 0 ? colors.faintText : colors.text);
  painter.drawText(metrics.typeArea(), Qt::AlignLeft | Qt::AlignVCenter, m_shownType);
  paintStatus(painter);
}

// The name and the mark of the state are larger than they are near by, so that they can be read.
void ActionBox::paintFarName(QPainter& painter, double scale) const {
  QFont font = m_scene.metrics().textFont();
  font.setPixelSize(static_cast<int>(std::ceil(kFarNamePixels / scale)));
  painter.setFont(font);
  QRectF area = QRectF(QPointF(), m_size).adjusted(6, 4, -6, -4);
  if (m_status.mark != StateMark::none) {
    const double size = kFarNamePixels / scale;
    const QColor color = m_status.mark == StateMark::failed
                             ? m_scene.colors().error
                             : m_scene.colors().ofState(m_state.kind);
    drawStateMark(painter, {area.left(), area.center().y() - size / 2, size, size}, m_status.mark,
                  color, m_state.fractionDone);
    area.setLeft(area.left() + size + kMarkGap);
  }
  const QString name = QFontMetricsF(font).elidedText(m_name, Qt::ElideMiddle, area.width());
  painter.drawText(area, Qt::AlignCenter, name);
}

void ActionBox::paintName(QPainter& painter) const {
  const CanvasMetrics& metrics = m_scene.metrics();
  const QRectF area = metrics.nameArea();
  painter.setFont(metrics.nameFont());
  const double ascent = QFontMetricsF(metrics.nameFont()).ascent();
  double y = area.center().y() - metrics.lineHeight() * m_nameLines.size() / 2 + ascent;
  for (const QString& line : m_nameLines) {
    painter.drawText(QPointF(area.left(), y), line);
    y += metrics.lineHeight();
  }
}

void ActionBox::paintStatus(QPainter& painter) const {
  const CanvasMetrics& metrics = m_scene.metrics();
  const CanvasColors& colors = m_scene.colors();
  if (m_state.hasWarning) {
    drawStateMark(painter, metrics.warningArea(m_size), StateMark::warning, colors.warning);
  }
  if (m_status.mark == StateMark::none) {
    return;
  }
  const QRectF area = metrics.statusArea(m_size);
  const double markSize = metrics.lineHeight() - 3;
  const bool isFault = m_status.mark == StateMark::failed;
  drawStateMark(painter, {area.left(), area.top() + 1.5, markSize, markSize}, m_status.mark,
                isFault ? colors.error : colors.ofState(m_state.kind), m_state.fractionDone);
  painter.setPen(isFault ? colors.error : m_isDisabled ? colors.faintText : colors.text);
  painter.drawText(area.adjusted(metrics.lineHeight() + kMarkGap, 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignVCenter, m_shownStatus);
}

void ActionBox::paintPins(QPainter& painter, double scale) const {
  if (scale < kTextScale && !m_scene.pinFilter()) {
    paintFarPins(painter);
    return;
  }
  for (const bool isOutput : {false, true}) {
    for (int pin = 0; pin < pinCount(isOutput); ++pin) {
      paintPin(painter, {m_id, pin, isOutput});
      // Input pins have long names, and boxes are near one another: only who draws a link or points
      // at a pin wants them.
      const bool isWanted = isOutput || m_scene.litPin() == PinRef{m_id, pin, isOutput} ||
                            (m_scene.pinFilter() && m_scene.pinFilter()({m_id, pin, isOutput}));
      if (scale >= kTextScale && isWanted && !pinNames(isOutput)[pin].isEmpty()) {
        paintPinName(painter, pin, isOutput);
      }
    }
  }
}

void ActionBox::paintFarPins(QPainter& painter) const {
  for (const bool isOutput : {false, true}) {
    for (int pin = 0; pin < pinCount(isOutput); ++pin) {
      const QPointF at = m_scene.metrics().pinOffset(pin, isOutput);
      painter.fillRect(
          QRectF(at.x() - kPinRadius, at.y() - kPinRadius, 2 * kPinRadius, 2 * kPinRadius),
          m_scene.colors().link);
    }
  }
}

void ActionBox::paintPin(QPainter& painter, const PinRef& pin) const {
  const CanvasColors& colors = m_scene.colors();
  const bool isLit = m_scene.litPin() == pin;
  const bool isOffered = m_scene.pinFilter() && m_scene.pinFilter()(pin);
  const double radius = isLit ? kLitPinRadius : kPinRadius + (isOffered ? 1.5 : 0.0);
  painter.setPen(QPen(isLit || isOffered ? colors.accent : colors.link, 1.5));
  painter.setBrush(isOffered || (isLit && !m_scene.pinFilter()) ? colors.accent : colors.box);
  painter.drawEllipse(m_scene.metrics().pinOffset(pin.pin, pin.isOutput), radius, radius);
}

void ActionBox::paintPinName(QPainter& painter, int pin, bool isOutput) const {
  const CanvasMetrics& metrics = m_scene.metrics();
  const QPointF at = metrics.pinOffset(pin, isOutput);
  const double width =
      isOutput ? m_bounds.right() - at.x() - kPinNameGap : at.x() - m_bounds.left() - kPinNameGap;
  const QRectF area(isOutput ? at.x() + kPinNameGap : at.x() - kPinNameGap - width,
                    at.y() - metrics.lineHeight() - 1, width, metrics.lineHeight());
  if (!isOutput) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_scene.colors().background);
    painter.drawRect(area);
  }
  painter.setFont(metrics.textFont());
  painter.setPen(m_scene.colors().faintText);
  painter.drawText(area, (isOutput ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter,
                   pinNames(isOutput)[pin]);
}

}  // namespace kelvarin
