// Evaluates the expressions of one action for many rows at once.
//
// For expressions of native code: their results depend on numbers of the row alone, and they
// cannot fail. A number that is no key ends the rows that are evaluated before its own, so that it
// fails when its turn comes, row by row. RowEvaluation evaluates all other expressions.
// Part of ExpressionEvaluator. Order of calls: start() when the last output has been compiled, then
// evaluate() for the rows to come.
#pragma once

#include <cstdint>
#include <vector>

#include "expression/backends/compiled_expression.h"
#include "expression/evaluator/expression_set.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// The results of one output, contiguous in the bytes of its column.
struct ColumnResults {
  unsigned char* values = nullptr;  // null: row by row
  std::size_t step = 0;

  const double* numbers() const { return reinterpret_cast<const double*>(values); }
};

class BatchEvaluation {
 public:
  explicit BatchEvaluation(ExpressionSet& expressions) : m_expressions(expressions) {}
  BatchEvaluation(const BatchEvaluation&) = delete;
  BatchEvaluation& operator=(const BatchEvaluation&) = delete;

  void clear();
  // Finds the outputs that can be evaluated so.
  void start();

  // False when no output can be evaluated so, which then holds for all rows to come.
  bool isPossible() const { return !m_outputs.empty(); }
  // Evaluates what can be for the row to be loaded next and as many of those after it as it
  // returns, with the results that loading and evaluating them one by one would have. 0: there are
  // no such rows, or it does not pay.
  std::size_t evaluate(const RowsAhead& rows);
  // Results of the rows of the last evaluate(), the same until the next one.
  ColumnResults results(int output);
  // The rows must be loaded nevertheless, since some outputs are evaluated row by row, or loading
  // has effects.
  bool mustLoadRows() const;

 private:
  struct Output {
    int index = 0;
    ColumnsCall call;
    const KeyCast* keyCast = nullptr;  // where the results are keys
    std::vector<double> numbers;
    std::vector<std::uint32_t> keys;
  };
  struct Variable {
    NumberSource source;
    std::vector<double> numbers;  // where the producer's are not contiguous
    std::vector<std::uint32_t> keys;
  };

  void add(int index);
  const NumberSource* sourceOf(std::size_t variable) const;
  void reserve();
  bool load(const RowsAhead& rows, std::size_t count, double rowNumber);
  static const double* numbersOf(Variable& variable, const RowsAhead& rows, std::size_t count);
  static const double* numbersOfKeys(Variable& variable, const RowsAhead& rows, std::size_t count);
  void giveUp(std::size_t variable);
  static std::size_t castToKeys(Output& output, std::size_t count);

  ExpressionSet& m_expressions;
  std::vector<NumberSource> m_sources;  // of all variables
  std::vector<Output> m_outputs;
  std::vector<Variable> m_variables;     // those that the outputs use
  std::vector<const double*> m_columns;  // by the variable's index in the store
  std::size_t m_rowsAtOnce = 0;          // 0 until the buffers are reserved
};

}  // namespace kelvarin
