// Evaluates a program for the rows of one batch, some of them at a time.
//
//   BatchEvaluation evaluation(program, batch, firstRow);
//   for (std::size_t row = 0; row < batch.rowCount(); row += evaluation.rowCount()) {
//     evaluation.load(row, batch.rowCount());
//     use(evaluation.numbers(0));
//   }
//
// Results are those of RowEvaluation, bit for bit. Memory is taken once for each batch.
// Used by the stages of the expression actions.
// Threads: one at a time; any number of evaluations share a program.
#pragma once

#include <memory>
#include <vector>

#include "expression/evaluator/batch_program.h"

namespace kelvarin {

class BatchEvaluation {
 public:
  // Program and batch outlive it. `firstRow` is the number of the batch's first row.
  BatchEvaluation(const BatchProgram& program, const RowBatch& batch, long long firstRow);

  // Loads the rows from `begin` on, at least one and none from `end` on, with the first element of
  // each vector.
  void load(std::size_t begin, std::size_t end);
  // The same rows with another element of each vector.
  void loadElement(int element);

  // Of the rows that are loaded.
  std::size_t rowCount() const { return m_rowCount; }
  std::size_t storedRow(std::size_t row) const {
    return m_selection == nullptr ? m_firstStoredRow + row : m_selection[row];
  }
  // They are stored one after another.
  bool isContiguous() const { return m_selection == nullptr; }

  // The results of an output for these rows, one after another, valid until the next call.
  const double* numbers(int output);
  void evaluateInto(int output, double* numbers) const;

 private:
  void loadVariable(std::size_t index, int element);
  template <typename Value, typename Convert>
  const double* converted(std::size_t index, const Value* values, Convert convert);
  double* buffer(std::size_t index) { return m_buffers.get() + index * m_program.rowsAtOnce(); }

  const BatchProgram& m_program;
  const RowBatch& m_batch;
  const double m_firstRow;
  std::vector<const double*> m_columns;  // by the variable's index in the store
  std::unique_ptr<double[]> m_buffers;   // one a variable, and one for results
  std::size_t m_begin = 0;
  std::size_t m_rowCount = 0;
  std::size_t m_firstStoredRow = 0;
  const std::uint32_t* m_selection = nullptr;  // null where the rows are contiguous
};

}  // namespace kelvarin
