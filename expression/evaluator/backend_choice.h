// Picks the back-end of one expression: the first of those allowed that compiles it.
#pragma once

#include <optional>

#include <QString>

#include "expression/backends/compiled_expression.h"
#include "expression/backends/expression_scope.h"
#include "expression/backends/string_backend.h"
#include "expression/evaluator/engine_choice.h"

namespace kelvarin {

struct BackendRules {
  bool isObserved = false;  // a step debugger looks on
  bool isText = false;      // the result
  bool allowsNative = true;
  std::optional<BackendKind> required;  // this one or none
};

struct ChosenBackend {
  CompileResult compiled;  // the error is that of the last back-end tried
  EngineChoice choice;     // where there is no error
};

ChosenBackend compileWithFirstFit(const QString& expression, const BackendRules& rules,
                                  const ExpressionScope& scope, StringBackend& stringBackend);

}  // namespace kelvarin
