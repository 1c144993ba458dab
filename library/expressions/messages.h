// What users read about expressions that are compiled for streams.
#pragma once

#include <QString>

namespace kelvarin::library_messages {

inline QString noExpression() {
  return QStringLiteral("There is no expression: give outputs, a condition, or both.");
}

inline QString unknownSetting(const QString& name) {
  return QStringLiteral(
             "There is no setting '%1': they are the attributes of the action Calculator, and "
             "'truncate'.")
      .arg(name);
}

}  // namespace kelvarin::library_messages
