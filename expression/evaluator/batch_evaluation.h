// Evaluates a program for the rows of one batch, some of them at a time.
//
//   BatchEvaluation evaluation(program, batch, firstRow);
//   std::size_t row = 0;
//   while (row < batch.rowCount() && evaluation.load(row, batch.rowCount())) {
//     use(evaluation.numbers(0));
//     row += evaluation.rowCount();
//   }
//
// Results are those of RowEvaluation, bit for bit. A row that it has to evaluate itself, since it
// might fail or has values to be counted, ends the rows that are loaded, be it when an output is
// evaluated: if it is the first of them, none is left. Memory is taken once for each batch.
// Used by the stages of the expression actions.
// Threads: one at a time; any number of evaluations share a program.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "expression/batches/column_evaluation.h"
#include "expression/evaluator/batch_program.h"
#include "expression/evaluator/entry_columns.h"

namespace kelvarin {

class BatchEvaluation {
 public:
  // Program and batch outlive it. `firstRow` is the number of the batch's first row.
  BatchEvaluation(const BatchProgram& program, const RowBatch& batch, long long firstRow);

  // Loads rows from `begin` on and none from `end` on, with the first element of each vector. False
  // where there is none, or the run was stopped.
  bool load(std::size_t begin, std::size_t end);
  // The same rows with another element of each vector.
  void loadElement(int element);

  // Of the rows that are loaded; evaluating an output may leave fewer.
  std::size_t rowCount() const { return m_rowCount; }
  // Leaves the first rows only.
  void keepFirst(std::size_t count) { m_rowCount = std::min(m_rowCount, count); }
  std::size_t storedRow(std::size_t row) const {
    return m_selection == nullptr ? m_firstStoredRow + row : m_selection[row];
  }
  // They are stored one after another.
  bool isContiguous() const { return m_selection == nullptr; }

  bool yieldsText(int output) const { return m_program.yieldsText(output); }
  // The results of an output for these rows, one after another, valid until the next call. Each
  // output has either.
  const double* numbers(int output);
  const ColumnText* texts(int output);
  // For isTrueNumber(), whatever the type of the output.
  const double* truths(int output);
  void evaluateInto(int output, double* numbers);

 private:
  StoredRows storedRows() const { return {m_firstStoredRow, m_selection, m_rowCount}; }
  void loadNumber(std::size_t index, int element);
  void loadText(std::size_t index, int element);
  void loadTexts(const BatchColumn& column, ColumnText* texts) const;
  void printNumbers(const double* numbers, ColumnText* texts);
  void printKeys(const std::uint32_t* keys, ColumnText* texts);
  template <typename Value, typename Convert>
  const double* converted(std::size_t index, const Value* values, Convert convert);
  const double* convertedTexts(std::size_t index, const BatchColumn& column);
  double* buffer(std::size_t index) { return m_buffers.get() + index * m_program.rowsAtOnce(); }
  const BatchProgram::Output& outputAt(int output) const {
    return m_program.m_outputs[static_cast<std::size_t>(output)];
  }
  void evaluateColumns(int output);

  const BatchProgram& m_program;
  const RowBatch& m_batch;
  const double m_firstRow;
  EntryColumns m_entries;
  std::vector<const double*> m_numbers;  // by the variable's index in the store
  std::vector<const ColumnText*> m_texts;
  std::unique_ptr<double[]> m_buffers;  // one a variable, and one for results
  std::unique_ptr<ColumnText[]> m_textBuffers;
  TextArena m_printedNumbers;
  std::vector<TextColumn> m_convertedTexts;  // one a number variable, if there are any
  std::optional<ColumnEvaluation> m_columns;
  std::size_t m_begin = 0;
  std::size_t m_rowCount = 0;
  std::size_t m_firstStoredRow = 0;
  const std::uint32_t* m_selection = nullptr;  // null where the rows are contiguous
};

}  // namespace kelvarin
