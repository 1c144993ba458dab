// Two values side by side, such as `price 2` or `2price`: the operator between them is missing.
//
// Used by expression_hint.h.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// Empty when the error is about something else. `variables` cannot be functions, so a bracket
// behind one of them begins a second value.
QString missingOperatorHint(const ExpressionError& error, const QString& expression,
                            const QStringList& variables);

}  // namespace kelvarin
