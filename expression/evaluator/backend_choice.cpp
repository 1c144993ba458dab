#include "expression/evaluator/backend_choice.h"

#include "expression/backends/expression_text.h"
#include "expression/backends/fast_backend.h"
#include "expression/backends/native_backend.h"

namespace kelvarin {

namespace {

bool isTried(BackendKind kind, const BackendRules& rules) {
  if (rules.required) {
    return *rules.required == kind;
  }
  switch (kind) {
    case BackendKind::native:
      return rules.allowsNumberBackends && rules.allowsNative;
    case BackendKind::fast:
      return rules.allowsNumberBackends;
    case BackendKind::string:
      break;
  }
  return true;
}

}  // namespace

CompileResult compileWithFirstFit(const QString& expression, const BackendRules& rules,
                                  const ExpressionScope& scope, StringBackend& stringBackend) {
  const QString text = withoutLineBreaks(expression);
  CompileResult result = Failure{ExpressionError{}};
  for (const BackendKind kind : {BackendKind::native, BackendKind::fast, BackendKind::string}) {
    if (!isTried(kind, rules)) {
      continue;
    }
    result = kind == BackendKind::native ? compileNative(text, scope)
             : kind == BackendKind::fast ? compileFast(text, scope)
                                         : stringBackend.compile(text, scope);
    if (result) {
      return result;
    }
  }
  return result;
}

}  // namespace kelvarin
