// What the native compiler knows of this system's functions.
#pragma once

#include <memory>

namespace kelvarin {

namespace jit {
class CompilerContext;
}

// Common to all expressions; made by the first call.
std::shared_ptr<const jit::CompilerContext> nativeLanguage();

}  // namespace kelvarin
