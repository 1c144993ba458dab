// Reasons that come from elsewhere, with the full stop that another sentence needs before it.
#pragma once

#include <QString>

namespace kelvarin {

inline QString asSentence(const QString& reason) {
  const QString text = reason.trimmed();
  const bool isWhole = text.isEmpty() || text.endsWith(u'.') || text.endsWith(u'!');
  return isWhole ? text : text + u'.';
}

}  // namespace kelvarin
