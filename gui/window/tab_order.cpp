#include "gui/window/tab_order.h"

#include <algorithm>

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QTabBar>
#include <QToolBar>

namespace kelvarin {

namespace {

bool isSeen(const QWidget& part) {
  return part.isVisible() && !part.isWindow() &&
         part.parentWidget()->rect().intersects(part.geometry());
}

// Tool bars, panels, the bars with the tabs of panels, and what lies between them.
QList<QWidget*> partsOf(const QMainWindow& window) {
  QList<QWidget*> parts;
  for (QWidget* child : window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    const auto* tabs = qobject_cast<const QTabBar*>(child);
    const bool isPart = child == window.centralWidget() || qobject_cast<QToolBar*>(child) ||
                        qobject_cast<QDockWidget*>(child) || (tabs != nullptr && tabs->count() > 0);
    if (isPart && isSeen(*child)) {
      parts += child;
    }
  }
  std::ranges::sort(parts, {}, [](const QWidget* part) { return std::pair(part->y(), part->x()); });
  return parts;
}

bool takesTab(const QWidget& widget) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr &&
         widget.isVisible() && widget.isEnabled();
}

// With the one that has the focus, which may take it by clicks only.
QList<QWidget*> stopsIn(QWidget& part, const QWidget* focused) {
  QList<QWidget*> stops;
  QWidget* at = &part;
  do {
    if ((at == &part || part.isAncestorOf(at)) && (takesTab(*at) || at == focused)) {
      stops += at;
    }
    at = at->nextInFocusChain();
  } while (at != &part);
  return stops;
}

}  // namespace

QWidget* nextInTabOrder(const QMainWindow& window, bool isForward) {
  const QWidget* focused = QApplication::focusWidget();
  QList<QWidget*> stops;
  for (QWidget* part : partsOf(window)) {
    stops += stopsIn(*part, focused);
  }
  if (stops.isEmpty()) {
    return nullptr;
  }
  const qsizetype count = stops.size();
  const qsizetype current = stops.indexOf(focused);
  if (current < 0) {
    return isForward ? stops.front() : stops.back();
  }
  return stops[(current + (isForward ? 1 : count - 1)) % count];
}

}  // namespace kelvarin
