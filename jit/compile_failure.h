// Why an expression was not compiled.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

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

// The reason with `%1` replaced.
inline CompileFailure failureAt(CompileStatus status, std::size_t position, std::string_view reason,
                                std::string_view argument = {}) {
  std::string text(reason);
  if (const std::size_t place = text.find("%1"); place != std::string::npos) {
    text.replace(place, 2, argument);
  }
  return {status, static_cast<int>(position), std::move(text)};
}

}  // namespace kelvarin::jit
