// Why an expression was not compiled.
#pragma once

#include <cstddef>
#include <string>

namespace kelvarin::jit {

enum class CompileStatus {
  ok = 0,
  unsupported = 1,  // an assignment, several results, a text
  syntaxError = 2,
  unknownName = 3,
  tooLarge = 4  // longer, deeper or with more values alive at once than the compiler takes
};

struct CompileFailure {
  CompileStatus status = CompileStatus::ok;
  int position = -1;  // 0-based character of the expression, -1 when unknown
  std::string reason;
};

}  // namespace kelvarin::jit
