// Picks the back-end of one expression: the first of those allowed that compiles it.
#pragma once

#include <optional>

#include <QString>

#include "expression/backends/compiled_expression.h"
#include "expression/backends/expression_scope.h"
#include "expression/backends/string_backend.h"

namespace kelvarin {

struct BackendRules {
  bool allowsNumberBackends = true;  // no text is wanted and no step debugger looks on
  bool allowsNative = true;
  std::optional<BackendKind> required;  // this one or none
};

// The error is that of the last back-end tried.
CompileResult compileWithFirstFit(const QString& expression, const BackendRules& rules,
                                  const ExpressionScope& scope, StringBackend& stringBackend);

}  // namespace kelvarin
