// The names that a user may have meant by a name that does not exist.
#pragma once

#include <QString>
#include <QStringList>

#include "base/export.h"

namespace kelvarin {

// At most three, nearest first: those that differ in at most a third of their letters (one at
// least) but not in all, upper and lower case being one and blanks around a name none.
KELVARIN_CORE QStringList nearestNames(const QString& name, const QStringList& known);

}  // namespace kelvarin
