// What the user reads behind the error of an expression on the command line.
//
// Used by `kelvarin eval` and the commands that compute over a table without a graph file.
#pragma once

#include <QString>

#include "cli/console.h"
#include "expression/errors/expression_error.h"
#include "expression/help/expression_hint.h"

namespace kelvarin {

// The expression with a mark, where the position is known.
void showMarked(const ExpressionError& error, const QString& expression, Console& console);
// What may have been meant; empty where nothing is known about that.
QString hintAtExpression(const ExpressionError& error, const QString& expression,
                         const HintNames& names);

}  // namespace kelvarin
