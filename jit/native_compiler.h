// Numeric expression text -> machine code that reads an array of doubles and returns a double.
//
// Used by expression/backends/native_backend.cpp. Build a context, tell it the names an expression may use, compile.
// No machine code is emitted yet: compile() answers `unsupported` for every expression, and callers fall back to
// the next back-end as they do for any expression that this compiler refuses.
// Threads: a context belongs to one thread.  Errors: CompileStatus; never throws.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelvarin::jit {

using Function1 = double (*)(double);
using Function2 = double (*)(double, double);
using Function3 = double (*)(double, double, double);
using Function = std::variant<Function1, Function2, Function3>;

enum class CompileStatus { ok = 0, unsupported = 1 };

struct CompileFailure {
  CompileStatus status = CompileStatus::ok;
  int position = -1;  // 0-based character of the expression, -1 when unknown
  std::string reason;
};

// Compiled code; values points at the array that the variables were placed in.
class CompiledFunction {
 public:
  virtual ~CompiledFunction() = default;
  virtual double operator()(const double* values) const = 0;
};

class CompilerContext {
 public:
  void addFunction(std::string_view name, Function function);
  void addVariable(std::string_view name, std::size_t element);
  void addConstant(std::string_view name, double value);

  // Gives null and fills `failure` when the expression cannot be compiled.
  std::unique_ptr<CompiledFunction> compile(std::string_view expression,
                                            CompileFailure& failure) const;

 private:
  struct NamedFunction {
    std::string name;
    Function function;
  };
  struct NamedVariable {
    std::string name;
    std::size_t element;
  };
  struct NamedConstant {
    std::string name;
    double value;
  };
  std::vector<NamedFunction> m_functions;
  std::vector<NamedVariable> m_variables;
  std::vector<NamedConstant> m_constants;
};

}  // namespace kelvarin::jit
