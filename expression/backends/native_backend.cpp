#include "expression/backends/native_backend.h"

#include <algorithm>
#include <string>
#include <string_view>
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

  NumberCall numberCall() override { return {evaluateNow, this}; }

 private:
  static bool evaluateNow(void* expression, double* number) {
    const auto& self = *static_cast<const NativeExpression*>(expression);
    *number = (*self.m_function)(self.m_values);
    return true;
  }

  std::unique_ptr<jit::CompiledFunction> m_function;
  const double* m_values;
};

// The functions whose bodies the compiler writes itself.
constexpr std::pair<std::string_view, jit::Intrinsic> kIntrinsics[] = {
    {"isNuLL", jit::Intrinsic::isNull},       {"isMissing", jit::Intrinsic::isNull},
    {"isNan", jit::Intrinsic::isNan},         {"isFinite", jit::Intrinsic::isFinite},
    {"isTrue", jit::Intrinsic::isTrue},       {"not", jit::Intrinsic::logicalNot},
    {"sqr", jit::Intrinsic::square},          {"nvl", jit::Intrinsic::nvl},
    {"nvl2", jit::Intrinsic::nvl2},           {"nanvl", jit::Intrinsic::nanvl},
    {"nanvl2", jit::Intrinsic::nanvl2},       {"finitevl", jit::Intrinsic::finitevl},
    {"finitevl2", jit::Intrinsic::finitevl2}, {"floor2", jit::Intrinsic::floor2},
    {"abs", jit::Intrinsic::absolute},        {"sign", jit::Intrinsic::sign},
    {"rint", jit::Intrinsic::rint},           {"trunc", jit::Intrinsic::truncate}};

jit::Intrinsic intrinsicOf(std::string_view name) {
  const auto* found = std::find_if(std::begin(kIntrinsics), std::end(kIntrinsics),
                                   [&](const auto& entry) { return entry.first == name; });
  return found == std::end(kIntrinsics) ? jit::Intrinsic::none : found->second;
}

// Those of any number of arguments the compiler has by itself.
void addFunction(jit::CompilerContext& context, const FunctionLine& line) {
  std::visit(
      [&](auto body) {
        if constexpr (std::is_constructible_v<jit::Function, decltype(body)>) {
          context.addFunction(line.name, body, intrinsicOf(line.name));
        }
      },
      line.number);
}

// What all expressions have in common.
std::shared_ptr<const jit::CompilerContext> sharedContext() {
  static const auto shared = [] {
    auto context = std::make_shared<jit::CompilerContext>();
    for (const FunctionLine& line : functionTable()) {
      if ((line.backends & kInNative) != 0) {
        addFunction(*context, line);
      }
    }
    return context;
  }();
  return shared;
}

void addNames(jit::CompilerContext& context, const QString& expression,
              const ExpressionScope& scope) {
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
  jit::CompilerContext context(sharedContext());
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
