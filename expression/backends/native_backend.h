// Expressions of numbers as machine code.
#pragma once

#include "expression/backends/compiled_expression.h"
#include "expression/backends/expression_scope.h"

namespace kelvarin {

// `expression` has no line breaks (withoutLineBreaks()).
CompileResult compileNative(const QString& expression, const ExpressionScope& scope);

}  // namespace kelvarin
