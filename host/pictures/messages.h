// Why a picture was not drawn.
#pragma once

#include <QString>

namespace kelvarin::messages {

inline QString noPictures() {
  return QStringLiteral("Icons are not drawn: this program runs without a screen.");
}
inline QString notDrawable(const QString& path) {
  return QStringLiteral("The picture \"%1\" is missing or is no SVG file.").arg(path);
}

}  // namespace kelvarin::messages
