// Comparisons without a sign such as && between them, as in `3 < x < 5`, where each compares the
// result of the one before, 1 or 0.
//
// Used by expression_warnings.h.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin {

// The parts of the first chain: `3`, `<`, `x`, `<` and `5`. Empty where there is none: brackets,
// arguments and signs such as && and ?: separate comparisons.
QStringList chainedComparison(const QString& expression);

}  // namespace kelvarin
