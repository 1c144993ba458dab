#include "host/widgets/action_icon.h"

#include <QPainter>
#include <QPixmap>

#include "host/contract/action_item.h"

namespace kelvarin {

namespace {

QIcon selectableIcon(const QPixmap& picture) {
  QPixmap selected(picture.size());
  selected.setDevicePixelRatio(picture.devicePixelRatio());
  selected.fill(Qt::transparent);
  QPainter painter(&selected);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  const QRectF area(QPointF(), picture.deviceIndependentSize());
  painter.drawRoundedRect(area, 4, 4);
  painter.drawPixmap(area.marginsRemoved({2, 2, 2, 2}), picture, picture.rect());
  painter.end();
  QIcon icon(picture);
  icon.addPixmap(selected, QIcon::Selected);
  return icon;
}

}  // namespace

QIcon actionIcon(const ActionItem& action, int size) {
  if (const QPixmap* picture = action.getImage(size)) {
    return selectableIcon(*picture);
  }
  return icon(iconNameOf(action));
}

IconName iconNameOf(const ActionItem& action) {
  switch (action.endpoint()) {
    case ActionItem::Endpoint::reader:
      return IconName::table;
    case ActionItem::Endpoint::writer:
      return IconName::save;
    case ActionItem::Endpoint::transform:
      return action.outputPinCount() == 0 ? IconName::discard : IconName::step;
  }
  return IconName::step;
}

}  // namespace kelvarin
