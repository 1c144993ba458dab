// Expression text -> Expression.
//
// Used by native_compiler.cpp. Names are looked up in the order of the span: the first that knows
// one wins, and among its values a variable wins over a constant.
// Errors: CompileFailure; never throws but for want of memory.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "jit/compile_failure.h"
#include "jit/expression.h"
#include "jit/symbols.h"

namespace kelvarin::jit {

inline constexpr std::size_t kMaximumExpressionLength = 19'999;
inline constexpr int kMaximumNesting = 200;

std::optional<Expression> parse(std::string_view text, std::span<const Symbols* const> scopes,
                                CompileFailure& failure);

}  // namespace kelvarin::jit
