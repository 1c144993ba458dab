#include "expression/backends/native_language.h"

#include <type_traits>

#include "expression/functions/function_table.h"
#include "jit/native_compiler.h"

namespace kelvarin {

namespace {

// Those of any number of arguments the compiler has by itself.
void addFunction(jit::CompilerContext& context, const FunctionLine& line) {
  std::visit(
      [&](auto body) {
        if constexpr (std::is_constructible_v<jit::Function, decltype(body)>) {
          context.addFunction(line.name, body, line.body.intrinsic);
        }
      },
      line.body.number);
}

}  // namespace

std::shared_ptr<const jit::CompilerContext> nativeLanguage() {
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

}  // namespace kelvarin
