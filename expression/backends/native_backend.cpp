#include "expression/backends/native_backend.h"

#include <string>
#include <utility>

#include "expression/backends/expression_text.h"
#include "expression/backends/native_language.h"
#include "expression/errors/messages.h"
#include "expression/functions/function_line.h"
#include "expression/tokens/expression_tokens.h"
#include "jit/native_compiler.h"

namespace kelvarin {

namespace {

class NativeExpression final : public NumberExpression {
 public:
  NativeExpression(std::unique_ptr<jit::CompiledFunction> function, const double* values)
      : m_function(std::move(function)), m_values(values) {}

  BackendKind kind() const override { return BackendKind::native; }

  NumberCall numberCall() override { return {evaluateNow, this}; }
  ColumnsCall columnsCall() const override {
    return {evaluateColumns, this, m_function->elements(), m_function->isCheap()};
  }

 private:
  static bool evaluateNow(void* expression, double* number) {
    const auto& self = *static_cast<const NativeExpression*>(expression);
    *number = (*self.m_function)(self.m_values);
    return true;
  }

  static void evaluateColumns(const void* expression, const double* const* columns,
                              std::size_t rowCount, double* numbers) {
    const auto& self = *static_cast<const NativeExpression*>(expression);
    self.m_function->evaluateColumns(columns, rowCount, numbers);
  }

  std::unique_ptr<jit::CompiledFunction> m_function;
  const double* m_values;
};

ExpressionError::Kind kindOf(jit::CompileStatus status) {
  switch (status) {
    case jit::CompileStatus::syntaxError:
      return ExpressionError::Kind::unexpectedToken;
    case jit::CompileStatus::unknownName:
      return ExpressionError::Kind::undefinedName;
    case jit::CompileStatus::tooLarge:
      return ExpressionError::Kind::tooLarge;
    default:
      return ExpressionError::Kind::other;
  }
}

// The name at the position; the compiler reports where it stands only.
QString nameAt(const QString& expression, int position) {
  for (const Token& token : ExpressionTokens(expression)) {
    if (positionOf(token) == position) {
      return expression.mid(position, sizeOf(token));
    }
  }
  return {};
}

void addNames(jit::CompilerContext& context, const QString& expression,
              const ExpressionScope& scope) {
  QSet<QString> open = valueNames(expression);
  for (const StoredVariable& variable : scope.variables.variables()) {
    if (!variable.isText && open.remove(variable.name)) {
      context.addVariable(latin1(variable.name), variable.index);
    }
  }
  for (const NamedConstant& constant : scope.constants) {
    if ((constant.backends & kInNative) != 0 && open.contains(constant.name)) {
      context.addConstant(latin1(constant.name), constant.number);
    }
  }
}

}  // namespace

CompileResult compileNative(const QString& expression, const ExpressionScope& scope) {
  if (!isLatin1(expression)) {
    const QLatin1String engine(backendLabel(BackendKind::native));
    return Failure{ExpressionError{.message = messages::notLatin1(engine),
                                   .kind = ExpressionError::Kind::refusedCharacter}};
  }
  jit::CompilerContext context(nativeLanguage());
  addNames(context, expression, scope);
  jit::CompileFailure failure;
  auto function = context.compile(latin1(expression), failure);
  if (function == nullptr) {
    const bool isName = failure.status == jit::CompileStatus::unknownName;
    return Failure{
        ExpressionError{.message = QString::fromStdString(failure.reason),
                        .position = failure.position,
                        .token = isName ? nameAt(expression, failure.position) : QString(),
                        .kind = kindOf(failure.status)}};
  }
  return std::unique_ptr<CompiledExpression>(
      std::make_unique<NativeExpression>(std::move(function), scope.variables.numbers()));
}

}  // namespace kelvarin
