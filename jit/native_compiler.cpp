#include "jit/native_compiler.h"

namespace kelvarin::jit {

void CompilerContext::addFunction(std::string_view name, Function function) {
  m_functions.push_back({std::string(name), function});
}

void CompilerContext::addVariable(std::string_view name, std::size_t element) {
  m_variables.push_back({std::string(name), element});
}

void CompilerContext::addConstant(std::string_view name, double value) {
  m_constants.push_back({std::string(name), value});
}

std::unique_ptr<CompiledFunction> CompilerContext::compile(std::string_view,
                                                           CompileFailure& failure) const {
  failure = {CompileStatus::unsupported, -1, "native code is not available"};
  return nullptr;
}

}  // namespace kelvarin::jit
