// The keyboard on the canvas: walking, moving, and the keys that no shortcut of the window takes.
#include <QAccessible>
#include <QKeyEvent>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_press.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/keyboard_walk.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/note_box.h"
#include "host/widgets/key_list.h"

namespace kelvarin {

namespace {

constexpr double kZoomOfKey = 1.25;
constexpr double kGapOfQuickAdd = 64.0;  // to the action behind which it opens

bool isArrow(int key) {
  return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

WalkDirection directionOf(int arrowKey) {
  switch (arrowKey) {
    case Qt::Key_Left:
      return WalkDirection::left;
    case Qt::Key_Right:
      return WalkDirection::right;
    case Qt::Key_Up:
      return WalkDirection::up;
    default:
      return WalkDirection::down;
  }
}

QPointF stepOf(int arrowKey) {
  switch (directionOf(arrowKey)) {
    case WalkDirection::left:
      return {-kGridStep, 0};
    case WalkDirection::right:
      return {kGridStep, 0};
    case WalkDirection::up:
      return {0, -kGridStep};
    case WalkDirection::down:
      return {0, kGridStep};
  }
  return {};
}

struct KeyCommand {
  QKeyCombination key;
  void (CanvasView::*command)();
};

const KeyCommand kKeyCommands[] = {
    {Qt::Key_Return, &CanvasView::openCurrent},
    {Qt::Key_Enter, &CanvasView::openCurrent},
    {Qt::CTRL | Qt::Key_Return, &CanvasView::previewCurrent},
    {Qt::CTRL | Qt::Key_Enter, &CanvasView::previewCurrent},
    {Qt::Key_F2, &CanvasView::renameCurrent},
    {Qt::Key_Delete, &CanvasView::deleteSelection},
    {Qt::Key_Backspace, &CanvasView::deleteSelection},
    {Qt::CTRL | Qt::Key_Delete, &CanvasView::deleteSelectionClosingGaps},
    {Qt::CTRL | Qt::Key_A, &CanvasView::selectAll},
    {Qt::CTRL | Qt::Key_C, &CanvasView::copySelection},
    {Qt::CTRL | Qt::Key_X, &CanvasView::cutSelection},
    {Qt::CTRL | Qt::Key_V, &CanvasView::paste},
    {Qt::CTRL | Qt::Key_D, &CanvasView::duplicateSelection},
    {Qt::CTRL | Qt::Key_E, &CanvasView::toggleDisabled},
    {Qt::CTRL | Qt::Key_K, &CanvasView::drawLinkByKeys},
};

}  // namespace

// Keys that no entry of a menu shows.
void CanvasView::describeKeys() {
  const std::pair<QKeySequence, QString> keys[] = {
      {Qt::Key_Tab, tr("Next action, in the order of reading")},
      {Qt::Key_Right, tr("Along the links; left, up and down as well")},
      {Qt::SHIFT | Qt::Key_Right, tr("Select along the links")},
      {Qt::ALT | Qt::Key_Right, tr("To a link of the action")},
      {Qt::CTRL | Qt::Key_Right, tr("Move what is selected")},
      {Qt::Key_Return, tr("Open the action, or edit the note")},
      {Qt::Key_Escape, tr("Give up what was begun, or the selection")},
      {Qt::Key_Space, tr("Hold it down to move about with the mouse")}};
  for (const auto& [key, what] : keys) {
    describeKey(*this, key, what, tr("Canvas"));
  }
}

void CanvasView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
    m_isSpacePressed = true;
    viewport()->setCursor(Qt::OpenHandCursor);
    return;
  }
  if (event->key() == Qt::Key_Escape) {
    if (m_gesture != nullptr) {
      cancelGesture();
    } else if (!selection().isEmpty()) {
      setSelection({});
    } else {
      event->ignore();
    }
    return;
  }
  if (m_linkByKeys) {
    actOnLinkKey(*event);
    return;
  }
  if (m_gesture != nullptr || actOnKey(*event) || quickAddByLetter(*event)) {
    event->accept();
    return;
  }
  event->ignore();
}

void CanvasView::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
    m_isSpacePressed = false;
    viewport()->unsetCursor();
    return;
  }
  event->ignore();
}

bool CanvasView::actOnKey(QKeyEvent& event) {
  if (isArrow(event.key())) {
    return actOnArrow(event);
  }
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const QKeyCombination pressed(modifiers, static_cast<Qt::Key>(event.key()));
  for (const KeyCommand& line : kKeyCommands) {
    if (line.key == pressed) {
      (this->*line.command)();
      return true;
    }
  }
  if (event.matches(QKeySequence::ZoomIn) || pressed == (Qt::CTRL | Qt::Key_Equal)) {
    zoomBy(kZoomOfKey);
  } else if (event.matches(QKeySequence::ZoomOut)) {
    zoomBy(1 / kZoomOfKey);
  } else if (pressed == (Qt::CTRL | Qt::Key_0)) {
    zoomBy(1 / transform().m11());
  } else {
    return false;
  }
  return true;
}

bool CanvasView::actOnArrow(QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (modifiers == Qt::ControlModifier) {
    moveByKey(event.key());
  } else if (modifiers == Qt::AltModifier) {
    return walkToLink(event.key());
  } else if (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier) {
    walk(event.key(), modifiers == Qt::ShiftModifier);
  } else {
    return false;
  }
  return true;
}

void CanvasView::walk(int arrowKey, bool extends) {
  const WalkDirection direction = directionOf(arrowKey);
  ActionId next = kNoId;
  const QSet<LinkId>& links = selection().links;
  if (links.size() == 1 && selection().actions.isEmpty()) {
    // From a link to the action at its end.
    const DrawnLink& link = graph().link(*links.cbegin());
    next = direction == WalkDirection::left ? link.from : link.to;
  } else {
    next = nextAction(*m_scene, m_focusAction, direction);
  }
  const ActionBox* box = m_scene->box(next);
  if (box == nullptr) {
    return;
  }
  if (extends) {
    GraphSelection selection = this->selection();
    selection.actions.insert(next);
    setSelection(selection);
    showArea(box->body());
    setFocusAction(next);
    return;
  }
  showAction(next);
}

// From an action to its first link on that side, from a link to the next one of the same action.
bool CanvasView::walkToLink(int arrowKey) {
  const bool isForward = arrowKey == Qt::Key_Right || arrowKey == Qt::Key_Down;
  QList<LinkId> links;
  for (const LinkId id :
       m_scene->box(m_focusAction) == nullptr ? QList<LinkId>() : graph().linksOf(m_focusAction)) {
    const DrawnLink& link = graph().link(id);
    const bool isOut = link.from == m_focusAction;
    if (arrowKey == Qt::Key_Up || arrowKey == Qt::Key_Down || isOut == isForward) {
      links.append(id);
    }
  }
  if (links.isEmpty()) {
    return false;
  }
  const QSet<LinkId>& selected = selection().links;
  const qsizetype now = selected.size() == 1 ? links.indexOf(*selected.cbegin()) : -1;
  const qsizetype next = isForward || now < 0 ? now + 1 : now - 1 + links.size();
  showLink(links[next % links.size()]);
  return true;
}

void CanvasView::moveByKey(int arrowKey) {
  QHash<ActionId, QPointF> actions;
  for (const ActionId id : selection().actions) {
    actions.insert(id, graph().position(id) + stepOf(arrowKey));
  }
  QHash<NoteId, QPointF> notes;
  for (const NoteId id : selection().notes) {
    notes.insert(id, graph().note(id).rectangle.topLeft() + stepOf(arrowKey));
  }
  if (!actions.isEmpty() || !notes.isEmpty()) {
    m_commands.moveActions(actions, notes, true);
  }
}

// The letters begin the search for an action that goes behind the current one.
bool CanvasView::quickAddByLetter(const QKeyEvent& event) {
  const QString text = event.text();
  const bool isPlain = !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
  if (!isPlain || text.size() != 1 || !text[0].isLetterOrNumber()) {
    return false;
  }
  PinRef pin;
  QPointF point = pointOfInterest();
  const ActionId current = currentAction();
  if (const ActionBox* box = m_scene->box(current)) {
    const bool hasOutput = graph().pinCount(current, true) > 0;
    pin = hasOutput ? PinRef{current, 0, true} : PinRef();
    point = box->body().topRight() + QPointF(kGapOfQuickAdd, 0);
  }
  const QPoint onViewport = mapFromScene(point);
  emit quickAddWanted(pin, point, viewport()->mapToGlobal(onViewport), text);
  return true;
}

// Row by row; notes come last.
QList<GraphSelection> CanvasView::tabOrder() const {
  QList<GraphSelection> order;
  for (const ActionId id : readingOrder(*m_scene)) {
    order.append({{id}, {}, {}});
  }
  for (const NoteId id : graph().notes()) {
    order.append({{}, {}, {id}});
  }
  return order;
}

// Tab leaves the canvas behind the last item, so that nobody is caught in it.
bool CanvasView::focusNextPrevChild(bool next) {
  if (m_linkByKeys) {
    showLinkByKeys(next ? 1 : -1);
    return true;
  }
  const QList<GraphSelection> order = tabOrder();
  const bool isOnNote = selection().notes.size() == 1 && selection().actions.isEmpty();
  const GraphSelection focused = isOnNote ? GraphSelection{{}, {}, selection().notes}
                                          : GraphSelection{{m_focusAction}, {}, {}};
  const qsizetype now = order.indexOf(focused);
  const qsizetype wanted = now < 0 ? (next ? 0 : -1) : now + (next ? 1 : -1);
  if (!hasFocus() || wanted < 0 || wanted >= order.size()) {
    return QGraphicsView::focusNextPrevChild(next);
  }
  showOnly(order[wanted]);
  return true;
}

void CanvasView::focusInEvent(QFocusEvent* event) {
  QGraphicsView::focusInEvent(event);
  // Tab from elsewhere begins at the first item, Shift+Tab at the last one.
  if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
    const QList<GraphSelection> order = tabOrder();
    if (selection().isEmpty() && !order.isEmpty()) {
      showOnly(event->reason() == Qt::TabFocusReason ? order.front() : order.back());
    }
  }
  setFocusAction(m_focusAction);
  announceFocus();
}

void CanvasView::focusOutEvent(QFocusEvent* event) {
  QGraphicsView::focusOutEvent(event);
  m_isSpacePressed = false;
  if (m_linkByKeys) {
    cancelGesture();
  }
  showFocusMark(false);
}

void CanvasView::setFocusAction(ActionId action) {
  showFocusMark(false);
  const bool isOther = m_focusAction != action;
  m_focusAction = action;
  showFocusMark(hasFocus());
  if (isOther) {
    announceFocus();
  }
}

void CanvasView::showFocusMark(bool shows) {
  if (ActionBox* box = m_scene->box(m_focusAction)) {
    box->setHasFocusMark(shows);
  }
}

void CanvasView::announceFocus() {
  if (!QAccessible::isActive() || !hasFocus()) {
    return;
  }
  const QList<ActionId> actions = graph().actions();
  const QSet<NoteId>& notes = selection().notes;
  const bool isOnNote = notes.size() == 1 && selection().actions.isEmpty();
  const qsizetype index = isOnNote ? actions.size() + graph().notes().indexOf(*notes.cbegin())
                                   : actions.indexOf(m_focusAction);
  if (index >= 0) {
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(static_cast<int>(index));
    QAccessible::updateAccessibility(&focus);
  }
}

}  // namespace kelvarin
