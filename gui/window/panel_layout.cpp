#include "gui/window/panel_layout.h"

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>

namespace kelvarin {

namespace {

// A panel that is not dragged passes it over.
void releaseMouse(QDockWidget& panel) {
  QMouseEvent release(QEvent::MouseButtonRelease, QPointF(), panel.mapToGlobal(QPointF()),
                      Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&panel, &release);
}

}  // namespace

void restorePanels(QMainWindow& window, const QByteArray& state) {
  for (QDockWidget* panel : window.findChildren<QDockWidget*>()) {
    releaseMouse(*panel);
  }
  window.restoreState(state);
}

}  // namespace kelvarin
