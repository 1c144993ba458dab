#include "expression/batches/column_evaluation.h"

#include <algorithm>

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

std::size_t computeOperation(Operation operation, const ColumnCall& call) {
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
  m_selections.resize(
      std::max(m_selections.size(), program.m_branchDepth * ColumnProgram::kMaxRows));
}

ColumnArgument ColumnEvaluation::columnAt(const Source& source,
                                          const ColumnProgram::Location& location) const {
  using Kind = ColumnProgram::Location::Kind;
  ColumnArgument column;
  column.isConstant = location.kind == Kind::constant;
  const std::size_t i = location.index;
  if (location.isText) {
    column.texts = location.kind == Kind::computed   ? textRegister(i)
                   : location.kind == Kind::variable ? source.variables.texts[i]
                                                     : source.program.m_textConstants[i].get();
  } else {
    column.numbers = location.kind == Kind::computed   ? numberRegister(i)
                     : location.kind == Kind::variable ? source.variables.numbers[i]
                                                       : source.program.m_numberConstants[i].get();
  }
  return column;
}

RegisterColumn ColumnEvaluation::registerAt(const ColumnProgram::Location& location) const {
  return {.numbers = location.isText ? nullptr : numberRegister(location.index),
          .texts = location.isText ? textRegister(location.index) : nullptr};
}

std::size_t ColumnEvaluation::evaluate(const ColumnProgram& program,
                                       const VariableColumns& variables, std::size_t rowCount) {
  reserve(program);
  m_arena.clear();
  const Source source{program, variables};
  rowCount = run(program.m_steps, source, rowCount);
  m_result = columnAt(source, program.m_result);
  return rowCount;
}

std::size_t ColumnEvaluation::run(const std::vector<Step>& steps, const Source& source,
                                  std::size_t rows) {
  for (const Step& step : steps) {
    rows =
        step.branches.empty() ? compute(step, source, rows) : computeBranches(step, source, rows);
  }
  return rows;
}

std::size_t ColumnEvaluation::compute(const Step& step, const Source& source, std::size_t rows) {
  m_operands.clear();
  for (const ColumnProgram::Location& operand : step.operands) {
    m_operands.push_back(columnAt(source, operand));
  }
  const RegisterColumn result = registerAt(step.result);
  const ColumnCall call{.arguments = m_operands,
                        .rows = rows,
                        .numbers = result.numbers,
                        .texts = result.texts,
                        .context = m_functions,
                        .arena = m_arena,
                        .longestText = source.program.m_longestText,
                        .maxBytes = source.program.m_bytesOfStep};
  return step.line != nullptr              ? callFunction(*step.line, call)
         : step.libraryFunction != nullptr ? callLibrary(step.libraryFunction, call)
                                           : computeOperation(step.operation, call);
}

std::size_t ColumnEvaluation::computeBranches(const Step& step, const Source& source,
                                              std::size_t rows) {
  if (step.operands.size() > 1) {
    copyRows(columnAt(source, step.operands[1]), rows, registerAt(step.result));
  }
  for (const ColumnProgram::Branch& branch : step.branches) {
    rows = computeBranch(step, branch, source, rows);
  }
  return rows;
}

std::size_t ColumnEvaluation::computeBranch(const Step& step, const ColumnProgram::Branch& branch,
                                            const Source& source, std::size_t rows) {
  const double* condition = columnAt(source, step.operands[0]).numbers;
  RowIndex* memory = m_selections.data() + (branch.depth - 1) * ColumnProgram::kMaxRows;
  const SelectedRows selected = selectRows(condition, branch.isOfTrue, rows, memory);
  if (selected.empty()) {
    return rows;
  }
  for (const ColumnProgram::Branch::Input& input : branch.inputs) {
    gatherRows(columnAt(source, input.from), selected, registerAt(input.to));
  }
  const std::size_t done = run(branch.steps, source, selected.size());
  const ColumnArgument values = columnAt(source, branch.result);
  const RegisterColumn results = registerAt(step.result);
  if (step.operation == Operation::choose) {
    scatterRows(values, selected.first(done), results);
  } else {
    scatterTruths(values.numbers, selected.first(done), results.numbers);
  }
  return done < selected.size() ? selected[done] : rows;
}

}  // namespace kelvarin
