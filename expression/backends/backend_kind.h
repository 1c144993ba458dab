// The three engines that can evaluate an expression, in the order in which they are tried.
#pragma once

#include <QString>

namespace kelvarin {

enum class BackendKind { native = 0, fast = 1, string = 2 };

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

}  // namespace kelvarin
