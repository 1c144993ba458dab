// Paths of files as the system has them, in bytes, and as users see them.
#pragma once

#include <string>

#include <QFile>

namespace kelvarin {

inline std::string systemPath(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

inline QString shownPath(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}

}  // namespace kelvarin
