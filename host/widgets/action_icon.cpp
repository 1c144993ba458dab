#include "host/widgets/action_icon.h"

#include <QPainter>
#include <QPixmap>

#include "host/contract/action_item.h"
#include "host/widgets/icons.h"

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
  return icon(action.endpoint() == ActionItem::Endpoint::writer ? IconName::save
                                                                : IconName::browse);
}

}  // namespace kelvarin
