// Expressions of numbers, interpreted by muParser.
#pragma once

#include "expression/backends/compiled_expression.h"
#include "expression/backends/expression_scope.h"

namespace kelvarin {

// `expression` has no line breaks (withoutLineBreaks()).
CompileResult compileFast(const QString& expression, const ExpressionScope& scope);

}  // namespace kelvarin
