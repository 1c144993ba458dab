// The mouse on the canvas: pressing, gestures, panning, zooming, tool tips.
#include <cmath>

#include <QApplication>
#include <QContextMenuEvent>
#include <QGestureEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_press.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/direct_editor.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

constexpr double kZoomOfWheelStep = 1.25;
constexpr double kWheelStep = 120.0;
constexpr int kEdge = 16;  // pixels at which a gesture scrolls the canvas
constexpr int kEdgeScroll = 24;

GraphSelection selectionOf(const CanvasHit& hit) {
  switch (hit.kind) {
    case CanvasHit::Kind::action:
    case CanvasHit::Kind::pin:
      return {{hit.pin.action}, {}, {}};
    case CanvasHit::Kind::link:
      return {{}, {hit.link}, {}};
    case CanvasHit::Kind::note:
    case CanvasHit::Kind::noteCorner:
      return {{}, {}, {hit.note}};
    case CanvasHit::Kind::nothing:
      break;
  }
  return {};
}

bool containsAll(const GraphSelection& all, const GraphSelection& part) {
  return all.actions.contains(part.actions) && all.links.contains(part.links) &&
         all.notes.contains(part.notes);
}

int overEdge(int position, int length) {
  return position < kEdge ? -kEdgeScroll : position > length - kEdge ? kEdgeScroll : 0;
}

}  // namespace

void CanvasView::select(const GraphSelection& hit, bool toggles) {
  if (!toggles) {
    setSelection(hit);
    return;
  }
  GraphSelection selection = this->selection();
  if (containsAll(selection, hit)) {
    selection.actions -= hit.actions;
    selection.links -= hit.links;
    selection.notes -= hit.notes;
  } else {
    selection.actions |= hit.actions;
    selection.links |= hit.links;
    selection.notes |= hit.notes;
  }
  setSelection(selection);
}

void CanvasView::mousePressEvent(QMouseEvent* event) {
  m_directEditor->commit();
  setFocus(Qt::MouseFocusReason);
  const QPoint position = event->position().toPoint();
  const bool isLeft = event->button() == Qt::LeftButton;
  if (event->button() == Qt::MiddleButton || (isLeft && m_isSpacePressed)) {
    cancelGesture();
    m_panned = position;
    viewport()->setCursor(Qt::ClosedHandCursor);
    return;
  }
  if (m_gesture != nullptr) {
    cancelGesture();
    return;
  }
  if (isLeft) {
    pressAt(position, event->modifiers());
  } else if (event->button() == Qt::RightButton) {
    const GraphSelection hit = selectionOf(m_scene->hitAt(mapToScene(position), reachOfPointer()));
    if (hit.isEmpty() || !containsAll(selection(), hit)) {
      select(hit, false);
    }
  }
}

void CanvasView::pressAt(QPoint position, Qt::KeyboardModifiers modifiers) {
  const QPointF point = mapToScene(position);
  const CanvasHit hit = m_scene->hitAt(point, reachOfPointer());
  m_press = std::make_unique<Press>(Press{position, point, hit, modifiers, false});
  const GraphSelection pressed = selectionOf(hit);
  const bool adds = modifiers & (Qt::ControlModifier | Qt::ShiftModifier);
  if (pressed.isEmpty()) {
    if (!adds) {
      setSelection({});
    }
    return;
  }
  const bool isSelected = containsAll(selection(), pressed);
  if (adds) {
    select(pressed, true);
  } else if (!isSelected) {
    select(pressed, false);
  } else {
    m_press->selectsAloneAtRelease = true;
  }
}

void CanvasView::startGesture() {
  const GestureParts parts{*this, *m_scene, m_commands};
  const Press& press = *m_press;
  switch (press.hit.kind) {
    case CanvasHit::Kind::pin:
      m_gesture = startLink(parts, press.hit.pin);
      break;
    case CanvasHit::Kind::action:
    case CanvasHit::Kind::note:
      m_gesture = startMove(parts, press.point);
      break;
    case CanvasHit::Kind::noteCorner:
      m_gesture = startNoteResize(parts, press.hit.note, press.point);
      break;
    case CanvasHit::Kind::link:
    case CanvasHit::Kind::nothing:
      m_gesture = startBand(parts, press.point,
                            press.modifiers & (Qt::ControlModifier | Qt::ShiftModifier));
      break;
  }
  m_press.reset();
  m_edgeTimer.start();
}

void CanvasView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint position = event->position().toPoint();
  if (m_panned) {
    const QPoint way = position - *m_panned;
    m_panned = position;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - way.y());
    return;
  }
  if (m_press != nullptr &&
      (position - m_press->position).manhattanLength() >= QApplication::startDragDistance()) {
    startGesture();
  }
  if (m_gesture != nullptr && !m_linkByKeys) {
    moveGestureTo(position, event->modifiers());
  } else if (m_press == nullptr) {
    showCursorAt(position);
  }
}

void CanvasView::moveGestureTo(QPoint position, Qt::KeyboardModifiers modifiers) {
  m_gesture->moveTo(mapToScene(position), modifiers);
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event) {
  if (m_panned) {
    m_panned.reset();
    showCursorAt(event->position().toPoint());
    return;
  }
  if (m_gesture != nullptr && event->button() == Qt::LeftButton) {
    moveGestureTo(event->position().toPoint(), event->modifiers());
    const std::unique_ptr<CanvasGesture> gesture = std::move(m_gesture);
    endGesture();
    gesture->finish(event->globalPosition().toPoint());
    return;
  }
  if (m_press != nullptr && m_press->selectsAloneAtRelease) {
    setSelection(selectionOf(m_press->hit));
  }
  m_press.reset();
}

void CanvasView::endGesture() {
  m_edgeTimer.stop();
  m_press.reset();
  m_linkByKeys.reset();
  m_gesture.reset();
}

void CanvasView::cancelGesture() {
  m_press.reset();
  if (m_gesture != nullptr) {
    m_gesture->cancel();
  }
  endGesture();
}

void CanvasView::scrollAtEdge() {
  const QPoint position = viewport()->mapFromGlobal(QCursor::pos());
  const QPoint step(overEdge(position.x(), viewport()->width()),
                    overEdge(position.y(), viewport()->height()));
  if (m_gesture == nullptr || step.isNull() || QApplication::mouseButtons() == Qt::NoButton) {
    return;
  }
  horizontalScrollBar()->setValue(horizontalScrollBar()->value() + step.x());
  verticalScrollBar()->setValue(verticalScrollBar()->value() + step.y());
  moveGestureTo(position, QApplication::keyboardModifiers());
}

void CanvasView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    return;
  }
  m_press.reset();
  const QPointF point = mapToScene(event->position().toPoint());
  const CanvasHit hit = m_scene->hitAt(point, reachOfPointer());
  switch (hit.kind) {
    case CanvasHit::Kind::action:
      emit openWanted(hit.pin.action);
      break;
    case CanvasHit::Kind::pin:
      emit previewWanted(hit.pin);
      break;
    case CanvasHit::Kind::link: {
      const DrawnLink& link = graph().link(hit.link);
      if (link.whyBroken.isEmpty()) {
        emit previewWanted({link.from, link.fromPin, true});
      }
      break;
    }
    case CanvasHit::Kind::note:
    case CanvasHit::Kind::noteCorner:
      m_directEditor->editNote(hit.note);
      break;
    case CanvasHit::Kind::nothing:
      emit quickAddWanted({}, point, event->globalPosition().toPoint(), {});
      break;
  }
}

void CanvasView::showCursorAt(QPoint position) {
  if (m_isSpacePressed) {
    viewport()->setCursor(Qt::OpenHandCursor);
    return;
  }
  const CanvasHit hit = m_scene->hitAt(mapToScene(position), reachOfPointer());
  const bool isPin = hit.kind == CanvasHit::Kind::pin;
  m_scene->setLitPin(isPin ? hit.pin : PinRef());
  if (isPin) {
    viewport()->setCursor(Qt::CrossCursor);
  } else if (hit.kind == CanvasHit::Kind::noteCorner) {
    viewport()->setCursor(Qt::SizeFDiagCursor);
  } else {
    viewport()->unsetCursor();
  }
}

void CanvasView::wheelEvent(QWheelEvent* event) {
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    const double steps = event->angleDelta().y() / kWheelStep;
    zoomAbout(transform().m11() * std::pow(kZoomOfWheelStep, steps), event->position());
    event->accept();
    return;
  }
  const QPoint pixels =
      event->pixelDelta().isNull() ? event->angleDelta() * 0.75 : event->pixelDelta();
  const bool isSideways = event->modifiers().testFlag(Qt::ShiftModifier);
  const QPoint way = isSideways && pixels.x() == 0 ? pixels.transposed() : pixels;
  horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
  verticalScrollBar()->setValue(verticalScrollBar()->value() - way.y());
  event->accept();
}

bool CanvasView::pinch(QEvent& event) {
  if (event.type() == QEvent::NativeGesture) {
    const auto& native = static_cast<QNativeGestureEvent&>(event);
    if (native.gestureType() == Qt::ZoomNativeGesture) {
      zoomAbout(transform().m11() * (1.0 + native.value()), native.position());
      return true;
    }
    return false;
  }
  if (event.type() == QEvent::Gesture) {
    const QGesture* gesture = static_cast<QGestureEvent&>(event).gesture(Qt::PinchGesture);
    if (const auto* pinched = static_cast<const QPinchGesture*>(gesture)) {
      cancelGesture();
      const QPointF centre = viewport()->mapFromGlobal(pinched->centerPoint());
      zoomAbout(transform().m11() * pinched->scaleFactor(), centre);
      return true;
    }
  }
  return false;
}

bool CanvasView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    return showToolTip(static_cast<QHelpEvent&>(*event));
  }
  if (event->type() == QEvent::Leave) {
    m_scene->setLitPin({});
  }
  return pinch(*event) || QGraphicsView::viewportEvent(event);
}

bool CanvasView::showToolTip(QHelpEvent& event) {
  const CanvasHit hit = m_scene->hitAt(mapToScene(event.pos()), reachOfPointer());
  QString text;
  if (hit.kind == CanvasHit::Kind::action) {
    const ActionId id = hit.pin.action;
    text = toolTipOfAction(graph(), id, m_scene->state(id), m_scene->problem(id));
  } else if (hit.kind == CanvasHit::Kind::pin) {
    text = toolTipOfPin(graph(), hit.pin, m_scene->rowsAt(hit.pin));
  } else if (hit.kind == CanvasHit::Kind::link) {
    const DrawnLink& link = graph().link(hit.link);
    text = toolTipOfLink(graph(), link, m_scene->rowsAt({link.from, link.fromPin, true}));
  }
  QToolTip::showText(event.globalPos(), text.toHtmlEscaped().replace(u'\n', QLatin1String("<br>")),
                     viewport());
  return true;
}

void CanvasView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard) {
    emit contextMenuWanted(event->globalPos());
    return;
  }
  const ActionBox* box = m_scene->box(currentAction());
  const QPoint at =
      box == nullptr ? viewport()->rect().center() : mapFromScene(box->body().center());
  emit contextMenuWanted(viewport()->mapToGlobal(at));
}

}  // namespace kelvarin
