#include "ui/widgets/zoom_plain_text_edit.h"

#include <QKeyEvent>
#include <QTextDocument>
#include <QWheelEvent>

namespace kelvarin {

namespace {

// No zoom goes down to this size, in points.
constexpr int kTooSmall = 8;
constexpr int kStep = 2;

}  // namespace

ZoomPlainTextEdit::ZoomPlainTextEdit(QWidget* parent)
    : QPlainTextEdit(parent), m_fontSize(font().pointSize()) {}

void ZoomPlainTextEdit::zoomStep(bool isLarger) {
  QFont font = document()->defaultFont();
  const int size = qMax(font.pointSize(), kTooSmall) + (isLarger ? kStep : -kStep);
  if (size <= kTooSmall) {
    return;
  }
  font.setPointSize(size);
  document()->setDefaultFont(font);
  emit zoomed();
}

void ZoomPlainTextEdit::zoomReset() {
  document()->setDefaultFont(font());
  emit zoomed();
}

void ZoomPlainTextEdit::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() == Qt::ControlModifier) {
    zoomStep(event->angleDelta().y() > 0);
    event->accept();
    return;
  }
  // The base class zooms with Control, whatever else is held.
  QWheelEvent plain(event->position(), event->globalPosition(), event->pixelDelta(),
                    event->angleDelta(), event->buttons(),
                    event->modifiers() & ~Qt::KeyboardModifiers(Qt::ControlModifier),
                    event->phase(), event->inverted(), event->source(), event->pointingDevice());
  QPlainTextEdit::wheelEvent(&plain);
  event->setAccepted(plain.isAccepted());
}

void ZoomPlainTextEdit::keyPressEvent(QKeyEvent* event) {
  if (!zoomByKey(*event)) {
    QPlainTextEdit::keyPressEvent(event);
  }
}

bool ZoomPlainTextEdit::event(QEvent* event) {
  if (event->type() != QEvent::FontChange) {
    return QPlainTextEdit::event(event);
  }
  // The base class sets the widget's font on the document, a style sheet makes it do so without
  // any change, and the zoom would be lost.
  const int zoom = document()->defaultFont().pointSize() - m_fontSize;
  m_fontSize = font().pointSize();
  const bool isHandled = QPlainTextEdit::event(event);
  if (zoom != 0) {
    QFont zoomed = font();
    zoomed.setPointSize(qMax(m_fontSize + zoom, kTooSmall + 1));
    document()->setDefaultFont(zoomed);
  }
  return isHandled;
}

bool ZoomPlainTextEdit::zoomByKey(const QKeyEvent& event) {
  if (!(event.modifiers() & Qt::ControlModifier)) {
    return false;
  }
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      zoomStep(true);
      return true;
    case Qt::Key_Minus:
      zoomStep(false);
      return true;
    case Qt::Key_0:
      zoomReset();
      return true;
    default:
      return false;
  }
}

}  // namespace kelvarin
