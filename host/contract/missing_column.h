// What a user may have meant by a column that a table does not have.
#pragma once

#include <QString>
#include <QStringList>

#include "base/export.h"

namespace kelvarin {

// One line: that the column is not there, the nearest names, and all names where they are few.
KELVARIN_CORE QString missingColumnHint(const QString& name, const QStringList& columns);

}  // namespace kelvarin
