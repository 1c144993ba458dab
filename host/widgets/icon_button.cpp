#include "host/widgets/icon_button.h"

#include <QEvent>

namespace kelvarin {

namespace {

QSize iconSizeFor(const QWidget& widget) {
  const int side = qMax(16, widget.fontMetrics().height());
  return {side, side};
}

}  // namespace

IconButton::IconButton(IconName name, const QString& text, QWidget* parent) : QToolButton(parent) {
  setAutoRaise(true);
  setFocusPolicy(Qt::StrongFocus);
  setIconSize(iconSizeFor(*this));
  setIconName(name);
  setDescription(text);
}

void IconButton::setIconName(IconName name) {
  setIcon(kelvarin::icon(name));
}

void IconButton::setDescription(const QString& text) {
  setToolTip(text);
  setAccessibleName(text.section(QLatin1String(" ("), 0, 0));
}

void IconButton::changeEvent(QEvent* event) {
  QToolButton::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    setIconSize(iconSizeFor(*this));
  }
}

}  // namespace kelvarin
