// Evaluates expressions for many rows at once, where a producer has rows in hand.
//
// For expressions of native code: their results depend on numbers of the row alone, and they
// cannot fail. A number that is no key ends the rows that are evaluated before its own, so that it
// fails when its turn comes, row by row.
// Used by ExpressionEvaluator, which evaluates all other expressions row by row.
// Threads: one.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "expression/backends/compiled_expression.h"
#include "expression/evaluator/variables.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// Where the numbers of a variable come from.
struct NumberSource {
  enum class Origin : unsigned char { rowNumber, numbers, keys };

  std::size_t place = 0;  // of the variable in the store
  Origin origin = Origin::rowNumber;
  int column = 0;
  double ofNull = kNullNumber;  // what stands for a missing value
};

// The results of one output, one behind the other in the bytes of its column.
struct ColumnResults {
  unsigned char* values = nullptr;  // null: row by row
  std::size_t step = 0;

  const double* numbers() const { return reinterpret_cast<const double*>(values); }
};

class ColumnEvaluation {
 public:
  // `sources` are those of all variables; the memory for as many rows as are evaluated at once
  // comes with the first evaluate().
  void setSources(std::vector<NumberSource> sources) { m_sources = std::move(sources); }
  // False when a variable of the expression has no such source. With `keyCast`, which outlives this
  // object, the results are keys.
  bool add(int output, const ColumnsCall& call, const KeyCast* keyCast);

  bool isEmpty() const { return m_outputs.empty(); }
  std::size_t outputCount() const { return m_outputs.size(); }
  // For how many of the rows there are results now; 0 where it does not pay or cannot be. The first
  // row has the number `rowNumber`. Results last until the next call.
  std::size_t evaluate(const RowsAhead& rows, double rowNumber);
  ColumnResults resultsOf(int output);

 private:
  struct Output {
    int index = 0;
    ColumnsCall call;
    const KeyCast* keyCast = nullptr;
    std::vector<double> numbers;
    std::vector<std::uint32_t> keys;
  };
  struct Variable {
    NumberSource source;
    std::vector<double> numbers;  // where they do not lie one behind the other
    std::vector<std::uint32_t> keys;
  };

  const NumberSource* sourceOf(std::size_t place) const;
  void makeRoom();
  bool load(const RowsAhead& rows, std::size_t count, double rowNumber);
  static const double* numbersOf(Variable& variable, const RowsAhead& rows, std::size_t count);
  static const double* numbersOfKeys(Variable& variable, const RowsAhead& rows, std::size_t count);
  void giveUp(std::size_t place);
  static std::size_t castToKeys(Output& output, std::size_t count);

  std::vector<NumberSource> m_sources;
  std::vector<Output> m_outputs;
  std::vector<Variable> m_variables;     // those that the outputs use
  std::vector<const double*> m_columns;  // by place
  std::size_t m_rowsAtOnce = 0;          // 0 until there is room
};

}  // namespace kelvarin
