// Where a small window goes that belongs to a text cursor: it stays on the screen and leaves the
// line with the cursor free.
#pragma once

#include <QGuiApplication>
#include <QPoint>
#include <QRect>
#include <QScreen>

namespace kelvarin {

enum class Side { below, above };

// On the other side where the screen ends.
inline QPoint positionBeside(const QRect& cursor, const QSize& size, Side side) {
  const QScreen* screen = QGuiApplication::screenAt(cursor.center());
  if (screen == nullptr) {
    screen = QGuiApplication::primaryScreen();
  }
  const QRect available = screen->availableGeometry();
  constexpr int kGap = 4;
  const int below = cursor.bottom() + kGap;
  const int above = cursor.top() - kGap - size.height();
  const bool fitsBelow = below + size.height() <= available.bottom();
  const bool fitsAbove = above >= available.top();
  const bool isBelow = side == Side::below ? fitsBelow || !fitsAbove : !fitsAbove && fitsBelow;
  const int x = qMax(available.left(), qMin(cursor.left(), available.right() - size.width()));
  return {x, isBelow ? below : above};
}

}  // namespace kelvarin
