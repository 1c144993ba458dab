// The names of variables that are dragged from their table into an expression, one a line.
#pragma once

#include <QString>

namespace kelvarin {

inline const QString kVariableNamesFormat = QStringLiteral("application/x-kelvarin-variable-names");

}  // namespace kelvarin
