// The pictures of actions in the sizes in which the canvas draws them, each drawn once.
//
// Threads: the user-interface thread.
#pragma once

#include <QHash>
#include <QPixmap>

class ActionItem;

namespace kelvarin {

class PicturesOfTypes {
 public:
  // At least `devicePixels` wide where it is at most 256; null when the type has no picture.
  const QPixmap& picture(const ActionItem& action, double devicePixels);
  void clear() { m_pictures.clear(); }

 private:
  QHash<QPair<QByteArray, int>, QPixmap> m_pictures;
};

}  // namespace kelvarin
