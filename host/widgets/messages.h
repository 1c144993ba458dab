// What the pickers show, and what the log says when there is no screen to ask on.
#pragma once

#include <QString>

namespace kelvarin::messages {

inline QString noFilePicked() {
  return QStringLiteral("No file was picked: there is no screen to ask on.");
}
inline QString pickColumnTitle() {
  return QStringLiteral("Columns");
}
inline QString pickColumn() {
  return QStringLiteral("Column:");
}

}  // namespace kelvarin::messages
