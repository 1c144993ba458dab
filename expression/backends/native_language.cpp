#include "expression/backends/native_language.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "expression/functions/function_table.h"
#include "jit/native_compiler.h"

namespace kelvarin {

namespace {

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
