// The functions and constants that belong to the expression language itself.
#pragma once

#include "jit/symbols.h"

namespace kelvarin::jit {

const Symbols& builtins();

}  // namespace kelvarin::jit
