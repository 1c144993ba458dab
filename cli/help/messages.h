// The texts of `kelvarin help`.
#pragma once

#include <QString>

namespace kelvarin::help_messages {

inline QString unknownTopic(const QString& given, const QString& near) {
  return QStringLiteral("There is no command and no topic '%1'.").arg(given) +
         (near.isEmpty() ? QString() : QStringLiteral(" Did you mean %1?").arg(near));
}
inline QString listHint() {
  return QStringLiteral("'kelvarin help' lists all there are.");
}

}  // namespace kelvarin::help_messages
