// Links are drawn without a mouse, too: Ctrl+K begins at the selected action, Tab and the arrows go
// from one pin that can take the link to the next, Enter links, Esc cancels.
#include <algorithm>
#include <cmath>

#include <QKeyEvent>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/keyboard_walk.h"
#include "gui/canvas/link_targets.h"

namespace kelvarin {

namespace {

QString pinText(const EditedGraph& graph, const PinRef& pin) {
  const QString name = graph.pinName(pin);
  const QString shown = name.isEmpty() ? QString::number(pin.pin) : name;
  return CanvasView::tr("'%1', pin %2").arg(graph.name(pin.action), shown);
}

}  // namespace

void CanvasView::drawLinkByKeys() {
  const ActionId current = currentAction();
  const int outputs = current == kNoId ? 0 : graph().pinCount(current, true);
  if (outputs == 0) {
    emit hint(tr("Select an action with an output first; the link begins there."));
    return;
  }
  const bool isNext = m_linkByKeys && m_linkByKeys->start.action == current;
  const int pin = isNext ? (m_linkByKeys->start.pin + 1) % outputs : 0;
  cancelGesture();
  LinkByKeys link{{current, pin, true}, {}, 0};
  const LinkTargets allowed(graph(), link.start);
  for (const ActionId id : readingOrder(*m_scene)) {
    for (int input = 0; input < graph().pinCount(id, false); ++input) {
      if (const PinRef target{id, input, false}; allowed.accepts(target)) {
        link.targets.append(target);
      }
    }
  }
  if (link.targets.isEmpty()) {
    emit hint(tr("No pin can take a link from %1.").arg(pinText(graph(), link.start)));
    return;
  }
  // The nearest one first.
  const QPointF from = m_scene->box(current)->pinPosition(pin, true);
  const auto distance = [this, from](const PinRef& target) {
    const QPointF way = m_scene->box(target.action)->pinPosition(target.pin, false) - from;
    const bool isTaken = graph().linkInto(target.action, target.pin) != kNoId;
    return std::hypot(way.x(), way.y()) + (isTaken ? 1e6 : 0.0);
  };
  const auto nearest = std::min_element(link.targets.cbegin(), link.targets.cend(),
                                        [&distance](const PinRef& one, const PinRef& other) {
                                          return distance(one) < distance(other);
                                        });
  link.current = nearest - link.targets.cbegin();
  m_gesture = startLink({*this, *m_scene, m_commands}, link.start);
  m_linkByKeys = link;
  showLinkByKeys(0);
}

void CanvasView::showLinkByKeys(int step) {
  LinkByKeys& link = *m_linkByKeys;
  const qsizetype count = link.targets.size();
  link.current = (link.current + step + count) % count;
  const PinRef& target = link.targets[link.current];
  const ActionBox* box = m_scene->box(target.action);
  showArea(box->body());
  m_gesture->moveTo(box->pinPosition(target.pin, false), {});
  emit hint(tr("Link from %1 to %2: Enter links, Tab goes to the next pin, Esc cancels.")
                .arg(pinText(graph(), link.start), pinText(graph(), target)));
}

// Every key belongs to the link until it is made or given up.
void CanvasView::actOnLinkKey(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Right:
    case Qt::Key_Down:
      showLinkByKeys(1);
      return;
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Up:
      showLinkByKeys(-1);
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      const std::unique_ptr<CanvasGesture> gesture = std::move(m_gesture);
      endGesture();
      gesture->finish({});
      return;
    }
    case Qt::Key_K:
      drawLinkByKeys();
      return;
    default:
      break;
  }
}

}  // namespace kelvarin
