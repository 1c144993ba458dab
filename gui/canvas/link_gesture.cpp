#include <memory>
#include <optional>

#include <QGraphicsPathItem>
#include <QPen>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/link_targets.h"

namespace kelvarin {

namespace {

class LinkGesture final : public CanvasGesture {
 public:
  LinkGesture(const GestureParts& parts, const PinRef& pin);
  ~LinkGesture() override;

  void moveTo(QPointF point, Qt::KeyboardModifiers modifiers) override;
  void finish(QPoint globalPosition) override;
  void cancel() override { end(); }

 private:
  QString refusal(const PinRef& end) const;
  bool accepts(const PinRef& end) const;
  PinRef pinAt(QPointF point);
  void connectTo(const PinRef& end);
  void end();

  GestureParts m_parts;
  PinRef m_start;
  LinkId m_moved = kNoId;  // whose end is moved
  std::optional<LinkTargets> m_targets;
  PinRef m_target;
  QString m_refusal;
  bool m_isOnBox = false;
  QPointF m_point;
  std::unique_ptr<QGraphicsPathItem> m_curve;
};

LinkGesture::LinkGesture(const GestureParts& parts, const PinRef& pin)
    : m_parts(parts), m_start(pin), m_curve(std::make_unique<QGraphicsPathItem>()) {
  const EditedGraph& graph = m_parts.scene.graph();
  m_moved = pin.isOutput ? kNoId : graph.linkInto(pin.action, pin.pin);
  if (m_moved != kNoId) {
    const DrawnLink& link = graph.link(m_moved);
    m_start = {link.from, link.fromPin, true};
    m_parts.scene.curve(m_moved)->setOpacity(0.25);
  }
  m_targets.emplace(graph, m_start);
  m_curve->setPen(QPen(m_parts.scene.colors().accent, 2.5, Qt::SolidLine, Qt::RoundCap));
  m_curve->setZValue(4);
  m_parts.scene.addItem(m_curve.get());
  m_parts.scene.setPinFilter([this](const PinRef& end) { return accepts(end); });
}

LinkGesture::~LinkGesture() {
  end();
}

QString LinkGesture::refusal(const PinRef& end) const {
  const EditedGraph& graph = m_parts.scene.graph();
  return m_start.isOutput ? graph.refusal(m_start.action, m_start.pin, end.action, end.pin)
                          : graph.refusal(end.action, end.pin, m_start.action, m_start.pin);
}

bool LinkGesture::accepts(const PinRef& end) const {
  return end == m_start || m_targets->accepts(end);
}

// On the body of a box, its first pin that can take the link and is free, else the first one.
PinRef LinkGesture::pinAt(QPointF point) {
  const CanvasHit hit = m_parts.scene.hitAt(point, 0.0);
  m_isOnBox = hit.kind == CanvasHit::Kind::pin || hit.kind == CanvasHit::Kind::action;
  if (hit.kind == CanvasHit::Kind::pin && hit.pin.isOutput != m_start.isOutput) {
    return hit.pin;
  }
  if (!m_isOnBox || hit.pin.action == m_start.action) {
    return {};
  }
  const EditedGraph& graph = m_parts.scene.graph();
  PinRef first;
  for (int pin = 0; pin < graph.pinCount(hit.pin.action, !m_start.isOutput); ++pin) {
    const PinRef end{hit.pin.action, pin, !m_start.isOutput};
    const bool isFree = end.isOutput || graph.linkInto(end.action, pin) == kNoId;
    if (isFree && accepts(end)) {
      return end;
    }
    if (first.action == kNoId) {
      first = end;
    }
  }
  return first;
}

void LinkGesture::moveTo(QPointF point, Qt::KeyboardModifiers) {
  m_point = point;
  m_target = pinAt(point);
  m_refusal = m_target.action == kNoId ? QString() : refusal(m_target);
  if (m_isOnBox && m_target.action == kNoId) {
    m_refusal = m_start.isOutput ? CanvasView::tr("A link ends at an input pin of another action.")
                                 : CanvasView::tr(
                                       "A link comes from an output pin of another "
                                       "action.");
  }
  emit m_parts.view.hint(m_refusal);
  const bool isTaken = m_target.action != kNoId && m_refusal.isEmpty();
  m_parts.scene.setLitPin(isTaken ? m_target : m_start);
  const ActionBox* box = m_parts.scene.box(m_start.action);
  if (box == nullptr) {
    return;
  }
  const QPointF fixed = box->pinPosition(m_start.pin, m_start.isOutput);
  const ActionBox* other = isTaken ? m_parts.scene.box(m_target.action) : nullptr;
  const QPointF end =
      other != nullptr ? other->pinPosition(m_target.pin, m_target.isOutput) : point;
  m_curve->setPath(m_start.isOutput ? curveBetween(fixed, end) : curveBetween(end, fixed));
}

void LinkGesture::connectTo(const PinRef& end) {
  const PinRef& from = m_start.isOutput ? m_start : end;
  const PinRef& to = m_start.isOutput ? end : m_start;
  if (m_moved == kNoId) {
    m_parts.commands.addLink(from.action, from.pin, to.action, to.pin);
    return;
  }
  const DrawnLink before = m_parts.scene.graph().link(m_moved);
  if (before.to == to.action && before.toPin == to.pin) {
    return;
  }
  m_parts.commands.together(CanvasView::tr("Move link"), [this, &from, &to] {
    m_parts.commands.remove({{}, {m_moved}, {}});
    m_parts.commands.addLink(from.action, from.pin, to.action, to.pin);
  });
}

void LinkGesture::finish(QPoint globalPosition) {
  const EditedGraph& graph = m_parts.scene.graph();
  end();
  if (!graph.hasAction(m_start.action) || (m_moved != kNoId && !graph.hasLink(m_moved))) {
    return;
  }
  if (m_target.action != kNoId && m_refusal.isEmpty()) {
    connectTo(m_target);
    return;
  }
  emit m_parts.view.hint(m_refusal);
  if (!m_isOnBox && m_moved == kNoId) {
    emit m_parts.view.quickAddWanted(m_start, m_point, globalPosition, {});
  }
}

void LinkGesture::end() {
  if (m_curve == nullptr) {
    return;
  }
  m_curve.reset();
  m_parts.scene.setPinFilter(nullptr);
  m_parts.scene.setLitPin({});
  if (LinkCurve* moved = m_parts.scene.curve(m_moved)) {
    moved->setOpacity(1.0);
  }
  emit m_parts.view.hint({});
}

}  // namespace

std::unique_ptr<CanvasGesture> startLink(const GestureParts& parts, const PinRef& pin) {
  return std::make_unique<LinkGesture>(parts, pin);
}

}  // namespace kelvarin
