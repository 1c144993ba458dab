// The three engines that can evaluate an expression, in the order in which they are tried.
#pragma once

#include <optional>

namespace kelvarin {

enum class BackendKind { native = 0, fast = 1, string = 2 };

// As logs and the command line show it.
inline constexpr const char* backendLabel(BackendKind kind) {
  switch (kind) {
    case BackendKind::native:
      return "Fastest Parser";
    case BackendKind::fast:
      return "Fast Parser";
    case BackendKind::string:
      break;
  }
  return "String Parser";
}

// As editors show it; none where no engine has been chosen yet.
inline constexpr const char* editorLabel(std::optional<BackendKind> kind) {
  if (!kind) {
    return "??? parser";
  }
  switch (*kind) {
    case BackendKind::native:
      return "Fastest parser";
    case BackendKind::fast:
      return "Fast parser";
    case BackendKind::string:
      break;
  }
  return "String parser";
}

}  // namespace kelvarin
