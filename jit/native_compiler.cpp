#include "jit/native_compiler.h"

#include <algorithm>

#include "jit/builtins.h"
#include "jit/code_generator.h"
#include "jit/lowering.h"
#include "jit/parser.h"
#include "jit/reference_evaluator.h"

namespace kelvarin::jit {

namespace {

struct CompiledCode {
  MachineCode code;
  bool callsFunctions = false;
};

ExecutableMemory compileExpression(const Expression& expression, InstructionSet instructionSet,
                                   CompiledCode& compiled) {
  if (instructionSet == InstructionSet::none) {
    return {};
  }
  Graph graph(expression.steps.size() * 2);
  const NodeId root = lower(expression, instructionSet >= InstructionSet::sse41, graph);
  std::optional<MachineCode> generated =
      generateCode(graph, root, expression.elements, instructionSet);
  if (!generated) {
    return {};
  }
  compiled = {std::move(*generated), graph.node(root).isHeavy};
  return ExecutableMemory::holding(compiled.code.bytes());
}

void evaluateColumnsByRow(const Expression& expression, const double* const* columns,
                          std::size_t rowCount, double* results) {
  const std::vector<std::size_t>& elements = expression.elements;
  const auto last = std::max_element(elements.begin(), elements.end());
  std::vector<double> values(last == elements.end() ? 0 : *last + 1);
  for (std::size_t row = 0; row < rowCount; ++row) {
    for (const std::size_t element : elements) {
      values[element] = columns[element][row];
    }
    results[row] = evaluate(expression, values.data());
  }
}

template <typename Pointer>
Pointer functionAt(const std::uint8_t* address) {
  return reinterpret_cast<Pointer>(reinterpret_cast<std::uintptr_t>(address));
}

}  // namespace

CompiledFunction::CompiledFunction(Expression expression, InstructionSet instructionSet)
    : m_expression(std::move(expression)) {
  CompiledCode compiled;
  m_memory = compileExpression(m_expression, instructionSet, compiled);
  if (isMachineCode()) {
    m_evaluateRow = functionAt<EvaluateRow>(m_memory.begin() + compiled.code.rowFunction);
    m_evaluateColumns =
        functionAt<EvaluateColumns>(m_memory.begin() + compiled.code.columnsFunction);
    m_isCheap = !compiled.callsFunctions;
    return;
  }
  m_evaluateRow = [](const double* values, const CompiledFunction* self) {
    return evaluate(self->m_expression, values);
  };
  m_evaluateColumns = [](const double* const* columns, std::size_t rowCount, double* results,
                         const CompiledFunction* self) {
    evaluateColumnsByRow(self->m_expression, columns, rowCount, results);
  };
}

void CompilerContext::addFunction(std::string_view name, Function function, Intrinsic intrinsic) {
  const bool fits = argumentCountOf(intrinsic) == argumentCountOf(function);
  m_symbols.functions.set(name, NamedFunction{function, fits ? intrinsic : Intrinsic::none});
}

void CompilerContext::addVariable(std::string_view name, std::size_t element) {
  m_symbols.variables.set(name, {element});
}

void CompilerContext::addConstant(std::string_view name, double value) {
  m_symbols.constants.set(name, {value});
}

std::unique_ptr<CompiledFunction> CompilerContext::compile(std::string_view expression,
                                                           CompileFailure& failure) const {
  std::vector<const Symbols*> scopes;
  for (const CompilerContext* context = this; context != nullptr;
       context = context->m_shared.get()) {
    scopes.push_back(&context->m_symbols);
  }
  scopes.push_back(&builtins());
  failure = {};
  std::optional<Expression> parsed = parse(expression, scopes, failure);
  if (!parsed) {
    return nullptr;
  }
  return std::unique_ptr<CompiledFunction>(
      new CompiledFunction(std::move(*parsed), m_instructionSet));
}

}  // namespace kelvarin::jit
