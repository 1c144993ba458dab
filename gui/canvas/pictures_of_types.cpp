#include "gui/canvas/pictures_of_types.h"

#include <QPainter>

#include "host/contract/action_item.h"
#include "host/widgets/action_icon.h"

namespace kelvarin {

namespace {

int sizeStep(double devicePixels) {
  int size = 16;
  while (size < devicePixels && size < 256) {
    size *= 2;
  }
  return size;
}

// The picture with a ratio of 1, however the screen is scaled.
QPixmap draw(const ActionItem& action, int size) {
  if (const QPixmap* picture = action.getImage(size)) {
    QPixmap copy = picture->scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    copy.setDevicePixelRatio(1.0);
    return copy;
  }
  return icon(iconNameOf(action)).pixmap(QSize(size, size), 1.0);
}

}  // namespace

const QPixmap& PicturesOfTypes::picture(const ActionItem& action, double devicePixels) {
  const int size = sizeStep(devicePixels);
  const QPair<QByteArray, int> key(action.typeName(), size);
  const auto found = m_pictures.constFind(key);
  if (found != m_pictures.constEnd()) {
    return *found;
  }
  return *m_pictures.insert(key, draw(action, size));
}

}  // namespace kelvarin
