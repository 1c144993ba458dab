#include "expression/backends/native_backend.h"

#include <string>
#include <utility>

#include "expression/backends/expression_text.h"
#include "expression/errors/messages.h"
#include "expression/functions/function_table.h"
#include "jit/native_compiler.h"

namespace kelvarin {

namespace {

class NativeExpression final : public NumberExpression {
 public:
  NativeExpression(std::unique_ptr<jit::CompiledFunction> function, const double* values)
      : m_function(std::move(function)), m_values(values) {}

  BackendKind kind() const override { return BackendKind::native; }

  bool evaluateNumber(double& number) override {
    number = (*m_function)(m_values);
    return true;
  }

 private:
  std::unique_ptr<jit::CompiledFunction> m_function;
  const double* m_values;
};

void addFunction(jit::CompilerContext& context, const FunctionLine& line) {
  std::visit(
      [&](auto body) {
        if constexpr (std::is_constructible_v<jit::Function, decltype(body)>) {
          context.addFunction(line.name, body);
        }
      },
      line.number);
}

void addNames(jit::CompilerContext& context, const QString& expression,
              const ExpressionScope& scope) {
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInNative) != 0) {
      addFunction(context, line);
    }
  }
  QSet<QString> open = valueNames(expression);
  for (const StoredVariable& variable : scope.variables.variables()) {
    if (!variable.isText && open.remove(variable.name)) {
      context.addVariable(latin1(variable.name), variable.place);
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
    const QString message = QString::fromUtf8(messages::kNotLatin1);
    return Failure{ExpressionError{message.arg(backendLabel(BackendKind::native)), -1, {}}};
  }
  jit::CompilerContext context;
  addNames(context, expression, scope);
  jit::CompileFailure failure;
  auto function = context.compile(latin1(expression), failure);
  if (function == nullptr) {
    return Failure{ExpressionError{QString::fromStdString(failure.reason), failure.position, {}}};
  }
  return std::unique_ptr<CompiledExpression>(
      std::make_unique<NativeExpression>(std::move(function), scope.variables.numbers()));
}

}  // namespace kelvarin
