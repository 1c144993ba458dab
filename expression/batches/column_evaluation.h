// Evaluates column programs for some rows at a time. Results are those of the String Parser.
//
// Used by BatchEvaluation.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "expression/batches/column_program.h"
#include "expression/batches/selected_rows.h"
#include "expression/functions/column_call.h"
#include "expression/functions/text_arena.h"

namespace kelvarin {

// The columns of the variables, by their indices in the store; those that a program does not read
// are not looked at.
struct VariableColumns {
  const double* const* numbers = nullptr;
  const ColumnText* const* texts = nullptr;
};

class ColumnEvaluation {
 public:
  // `functions` is copied, since bodies may change it.
  explicit ColumnEvaluation(const FunctionContext& functions) : m_functions(functions) {}
  ColumnEvaluation(const ColumnEvaluation&) = delete;
  ColumnEvaluation& operator=(const ColumnEvaluation&) = delete;

  // Returns how many of the rows were evaluated, all or those that come first. 0: the first row
  // must be left to the String Parser. At most ColumnProgram::kMaxRows at once.
  std::size_t evaluate(const ColumnProgram& program, const VariableColumns& variables,
                       std::size_t rowCount);

  // The results of the program evaluated last, until the next evaluation.
  const double* numbers() const { return m_result.numbers; }
  const ColumnText* texts() const { return m_result.texts; }

 private:
  using Step = ColumnProgram::Step;

  // What the steps of one evaluation read.
  struct Source {
    const ColumnProgram& program;
    const VariableColumns& variables;
  };

  void reserve(const ColumnProgram& program);
  // These return how many of the rows were evaluated.
  std::size_t run(const std::vector<Step>& steps, const Source& source, std::size_t rows);
  std::size_t compute(const Step& step, const Source& source, std::size_t rows);
  std::size_t computeBranches(const Step& step, const Source& source, std::size_t rows);
  std::size_t computeBranch(const Step& step, const ColumnProgram::Branch& branch,
                            const Source& source, std::size_t rows);

  ColumnArgument columnAt(const Source& source, const ColumnProgram::Location& location) const;
  RegisterColumn registerAt(const ColumnProgram::Location& location) const;
  double* numberRegister(std::size_t index) const {
    return m_numberRegisters.get() + index * ColumnProgram::kMaxRows;
  }
  ColumnText* textRegister(std::size_t index) const {
    return m_textRegisters.get() + index * ColumnProgram::kMaxRows;
  }

  std::unique_ptr<double[]> m_numberRegisters;
  std::unique_ptr<ColumnText[]> m_textRegisters;
  std::size_t m_numberCapacity = 0;  // in registers
  std::size_t m_textCapacity = 0;
  std::vector<RowIndex> m_selections;      // of each depth of branches
  std::vector<ColumnArgument> m_operands;  // of one step
  ColumnArgument m_result;
  TextArena m_arena;
  FunctionContext m_functions;
};

}  // namespace kelvarin
