// The signs with `=` of an expression: comparisons and assignments.
//
// Used by the back-ends, which keep what an expression assigns from all others, and by the warnings
// about assignments. Positions count 16-bit units.
#pragma once

#include <QList>
#include <QString>

namespace kelvarin {

// As wide as it is written.
struct EqualsSign {
  qsizetype start;
  QString text;

  bool isAssignment() const;
};

// Those outside texts and the comment at the end.
QList<EqualsSign> equalsSigns(const QString& expression);

// Evaluating the expression may change a variable.
bool mayAssign(const QString& expression);

}  // namespace kelvarin
