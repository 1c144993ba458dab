// Shows where in an expression a library stopped: the expression in one line and a mark below it.
//
// Used by the actions and by `kelvarin eval`, behind the error's own text.
// Threads: any.
#pragma once

#include <QString>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// The error with the position of its token where the library reports none: that of the last
// occurrence outside of texts. Unchanged where there is no token, or it is not in the expression.
ExpressionError withPosition(ExpressionError error, const QString& expression);

// Two lines, or one where the position is unknown. Of a long expression the part around the
// position.
QString markedExpression(const QString& expression, const ExpressionError& error);

}  // namespace kelvarin
