#include "expression/batches/column_evaluation.h"

#include "expression/batches/function_loops.h"
#include "expression/batches/number_loops.h"
#include "expression/batches/text_loops.h"

namespace kelvarin {

namespace {

std::size_t callLibrary(Number1 function, const ColumnCall& call) {
  for (std::size_t i = 0; i < call.rows; ++i) {
    call.numbers[i] = function(call.arguments[0].numbers[i]);
  }
  return call.rows;
}

std::size_t compute(Operation operation, const ColumnCall& call) {
  if (operation == Operation::join) {
    return joinTexts(call);
  }
  if (operation == Operation::choose) {
    return chooseValues(call);
  }
  if (call.arguments[0].texts != nullptr) {
    return compareTexts(operation, call);
  }
  if (call.arguments.size() == 1) {
    numberLoop1(operation)(call.arguments[0].numbers, call.rows, call.numbers);
  } else {
    numberLoop2(operation)(call.arguments[0].numbers, call.arguments[1].numbers, call.rows,
                           call.numbers);
  }
  return call.rows;
}

}  // namespace

void ColumnEvaluation::reserve(const ColumnProgram& program) {
  if (program.m_numberRegisters > m_numberCapacity) {
    m_numberCapacity = program.m_numberRegisters;
    m_numberRegisters =
        std::make_unique_for_overwrite<double[]>(m_numberCapacity * ColumnProgram::kMaxRows);
  }
  if (program.m_textRegisters > m_textCapacity) {
    m_textCapacity = program.m_textRegisters;
    m_textRegisters = std::make_unique<ColumnText[]>(m_textCapacity * ColumnProgram::kMaxRows);
  }
}

ColumnArgument ColumnEvaluation::columnAt(const ColumnProgram& program,
                                          const VariableColumns& variables,
                                          const ColumnProgram::Location& location) const {
  using Kind = ColumnProgram::Location::Kind;
  ColumnArgument column;
  column.isConstant = location.kind == Kind::constant;
  const std::size_t i = location.index;
  if (location.isText) {
    column.texts = location.kind == Kind::computed   ? textRegister(i)
                   : location.kind == Kind::variable ? variables.texts[i]
                                                     : program.m_textConstants[i].get();
  } else {
    column.numbers = location.kind == Kind::computed   ? numberRegister(i)
                     : location.kind == Kind::variable ? variables.numbers[i]
                                                       : program.m_numberConstants[i].get();
  }
  return column;
}

std::size_t ColumnEvaluation::evaluate(const ColumnProgram& program,
                                       const VariableColumns& variables, std::size_t rowCount) {
  reserve(program);
  m_arena.clear();
  for (const ColumnProgram::Step& step : program.m_steps) {
    m_operands.clear();
    for (const ColumnProgram::Location& operand : step.operands) {
      m_operands.push_back(columnAt(program, variables, operand));
    }
    const bool isText = step.result.isText;
    const ColumnCall call{.arguments = m_operands,
                          .rows = rowCount,
                          .numbers = isText ? nullptr : numberRegister(step.result.index),
                          .texts = isText ? textRegister(step.result.index) : nullptr,
                          .context = m_functions,
                          .arena = m_arena,
                          .longestText = program.m_longestText,
                          .maxBytes = program.m_bytesOfStep};
    rowCount = step.line != nullptr              ? callFunction(*step.line, call)
               : step.libraryFunction != nullptr ? callLibrary(step.libraryFunction, call)
                                                 : compute(step.operation, call);
  }
  m_result = columnAt(program, variables, program.m_result);
  return rowCount;
}

}  // namespace kelvarin
