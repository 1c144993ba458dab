#include "host/widgets/wrapped_height.h"

#include <QEvent>
#include <QLayout>
#include <QWidget>

namespace kelvarin {

WrappedHeight::WrappedHeight(QWidget& widget) : QObject(&widget) {
  widget.installEventFilter(this);
}

// A page that is not shown keeps the width of an earlier layout, which says nothing.
bool WrappedHeight::eventFilter(QObject* watched, QEvent* event) {
  auto& widget = *static_cast<QWidget*>(watched);
  switch (event->type()) {
    case QEvent::Hide:
      widget.setMinimumHeight(0);
      break;
    case QEvent::LayoutRequest:
    case QEvent::Resize:
    case QEvent::Show:
      reserve(widget);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void WrappedHeight::reserve(QWidget& widget) {
  const QLayout& layout = *widget.layout();
  const bool isKnown = widget.isVisible() && layout.hasHeightForWidth();
  widget.setMinimumHeight(isKnown ? layout.totalMinimumHeightForWidth(widget.width()) : 0);
}

}  // namespace kelvarin
