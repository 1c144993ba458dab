// The rows of a calculator: each output is evaluated once a row and fills one column.
//
// Where the producer knows many rows together, rows_ahead.cpp evaluates what can be for all of them
// at once, and the rows then take their results from there.
#pragma once

#include <cstddef>
#include <vector>

#include "actions/calculator/computed_rows.h"
#include "actions/calculator/output_columns.h"
#include "actions/calculator/row_computation.h"
#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/lookout.h"

namespace kelvarin {

class ScalarRows final : public RowComputation {
 public:
  ScalarRows(ActionItem& action, ExpressionEvaluator& evaluator,
             const std::vector<OutputVariable>& outputs, const OutputColumns& columns);

  bool compute(const OneRow& row) override {
    m_failures.clear();
    return computeRow<kAnyNumberWithFailures, true>(row);
  }
  // Without those of rows that were evaluated and never asked for.
  std::vector<ValueCounts> valueCounts() const override;
  ActionItem::ComputeRoutine routine() const override;

 private:
  // A number that updates a column: the column points at the value of the input row until it is set
  // to the result.
  struct UpdatedNumber {
    unsigned char* result;
    int column;
  };

  // The results of an output for the rows evaluated ahead.
  struct ColumnAhead {
    int output;
    unsigned char* next;
    std::size_t step;
    int column;
    unsigned char* cell;  // where its results are when rows are evaluated one by one
  };

  template <int kOutputs, bool kUpdatesNumbers>
  [[nodiscard]] bool computeRow(const OneRow& row);
  template <int kOutputs, bool kUpdatesNumbers>
  [[nodiscard]] bool computeNextRow(const OneRow& row) {
    return isEvaluatedAhead() ? takeEvaluatedRow(row) : computeRow<kOutputs, kUpdatesNumbers>(row);
  }
  // The row has results from before, or it and others get them now.
  bool isEvaluatedAhead() { return m_rowsEvaluated > 0 || (m_lookout.isDue() && evaluateAhead()); }
  bool evaluateAhead();
  [[nodiscard]] bool takeEvaluatedRow(const OneRow& row);
  void countResults(int output) {
    const auto index = static_cast<std::size_t>(output);
    m_counts[index].add(m_typeOfOutput[index], m_columns[m_columnOfOutput[index]]);
  }
  void countResultsAhead();
  static void takeRows(ActionItem* action, std::size_t count);
  void connectResultsAhead();
  void disconnectResultsAhead();

  ActionItem& m_action;
  BatchEvaluation& m_batches;
  std::vector<int> m_columnOfOutput;
  std::vector<MetaTypeColumn> m_typeOfOutput;
  std::vector<UpdatedNumber> m_updatedNumbers;

  Lookout m_lookout;
  bool m_mustLoadRows = true;       // those evaluated ahead
  std::size_t m_rowsEvaluated = 0;  // ahead, and not published yet
  std::vector<ColumnAhead> m_columnsAhead;
  std::vector<int> m_outputsByRow;  // all others
  ComputedRows m_computedRows;
};

}  // namespace kelvarin
