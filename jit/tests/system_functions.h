// The functions that a context of the system knows, written plainly, for tests of the compiler.
#pragma once

#include <span>

#include "jit/native_compiler.h"

namespace kelvarin::jit {

struct SystemFunction {
  const char* name;
  Function function;
  Intrinsic intrinsic;
};

std::span<const SystemFunction> systemFunctions();

// Knows the functions, `_null`, `_nan` and `_infinity`.
std::shared_ptr<const CompilerContext> systemContext();

}  // namespace kelvarin::jit
