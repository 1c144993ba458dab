// Numeric expression text -> machine code that reads an array of doubles and returns a double.
//
// Used by expression/backends/native_backend.cpp. Build a context, add the names that an
// expression may use, compile. Where machine code cannot be made or executed, the compiled function
// evaluates the expression step by step with the same results.
// Threads: a context belongs to one thread while names are added; compile() and compiled functions
// may be called from any number at once.
// Errors: CompileFailure; nothing throws but for want of memory.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "jit/compile_failure.h"
#include "jit/executable_memory.h"
#include "jit/expression.h"
#include "jit/functions.h"
#include "jit/instruction_set.h"
#include "jit/symbols.h"

namespace kelvarin::jit {

// Compiled code, freed with the object.
class CompiledFunction {
 public:
  // `values` points at the values of the variables, each at its element.
  double operator()(const double* values) const { return m_evaluateRow(values, this); }

  // The results of `rowCount` rows, the same bit for bit as row by row. columns[element] points at
  // the rows of the variable with that element; other elements are not looked at. `results` may be
  // one of the columns.
  void evaluateColumns(const double* const* columns, std::size_t rowCount, double* results) const {
    m_evaluateColumns(columns, rowCount, results, this);
  }

  // The elements of the variables that the expression uses.
  std::span<const std::size_t> elements() const { return m_expression.elements; }
  bool isMachineCode() const { return !m_memory.isEmpty(); }
  // Machine code that calls no function: a few instructions a row.
  bool isCheap() const { return m_isCheap; }

 private:
  friend class CompilerContext;
  // Machine code ignores the last argument.
  using EvaluateRow = double (*)(const double*, const CompiledFunction*);
  using EvaluateColumns = void (*)(const double* const*, std::size_t, double*,
                                   const CompiledFunction*);

  CompiledFunction(Expression expression, InstructionSet instructionSet);

  EvaluateRow m_evaluateRow;
  EvaluateColumns m_evaluateColumns;
  bool m_isCheap = false;
  ExecutableMemory m_memory;
  Expression m_expression;
};

class CompilerContext {
 public:
  CompilerContext() = default;
  // Knows the names of `shared` beside its own, which win. What many contexts have in common is
  // added once.
  explicit CompilerContext(std::shared_ptr<const CompilerContext> shared)
      : m_shared(std::move(shared)) {}

  // The function depends on its arguments alone and does not throw. An intrinsic of another number
  // of arguments is ignored.
  void addFunction(std::string_view name, Function function, Intrinsic intrinsic = Intrinsic::none);
  void addVariable(std::string_view name, std::size_t element);
  void addConstant(std::string_view name, double value);

  // The best that the processor has unless this is called; more than that is never taken.
  void setInstructionSet(InstructionSet instructionSet) {
    m_instructionSet = std::min(instructionSet, bestInstructionSet());
  }

  // Returns null and fills `failure` when the expression cannot be compiled.
  std::unique_ptr<CompiledFunction> compile(std::string_view expression,
                                            CompileFailure& failure) const;

 private:
  std::shared_ptr<const CompilerContext> m_shared;
  Symbols m_symbols;
  InstructionSet m_instructionSet = bestInstructionSet();
};

}  // namespace kelvarin::jit
