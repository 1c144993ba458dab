// What users read about work that did not fail by itself.
#pragma once

#include <QString>

namespace kelvarin::library_messages {

inline QString stopped() {
  return QStringLiteral("The work was stopped.");
}

inline QString failedSilently() {
  return QStringLiteral("The work failed, and nothing says why.");
}

inline QString noMemory() {
  return QStringLiteral("There is not enough memory.");
}

inline QString internal(const QString& reason) {
  return QStringLiteral("This is a fault of the library: %1.").arg(reason);
}

inline QString unknownException() {
  return internal(QStringLiteral("an exception of an unknown type"));
}

}  // namespace kelvarin::library_messages
