// The system's fixed font in the size of the application's, in which expressions are shown.
#pragma once

#include <QApplication>
#include <QFont>
#include <QFontDatabase>

namespace kelvarin {

inline QFont fixedFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(QApplication::font().pointSizeF());
  return font;
}

}  // namespace kelvarin
