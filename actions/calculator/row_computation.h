// How a calculator computes the rows of one run, into the columns of its output row.
//
// Made at the first row by the action's CalculatorPlan: ScalarRows computes one column an output,
// VectorRows one for every element of the action's vectors.
#pragma once

#include <algorithm>
#include <vector>

#include "actions/calculator/value_counts.h"
#include "expression/evaluator/row_evaluation.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class RowComputation {
 public:
  RowComputation(ActionItem& action, RowEvaluation& evaluation, int outputCount)
      : m_evaluation(evaluation),
        m_outputCount(outputCount),
        m_columns(action.getOutputRowForOutputPin(0)->getAllColForWrite()),
        m_counts(action.run() != nullptr && action.run()->countsValues
                     ? static_cast<std::size_t>(outputCount)
                     : 0) {}
  virtual ~RowComputation() = default;

  // Works with any plan and remembers the failures; the routine does the rest faster. False: the
  // run must stop.
  [[nodiscard]] virtual bool compute(const OneRow& row) = 0;
  // Of the last compute(), the evaluations that failed and did not stop the run.
  const std::vector<RowFailure>& failures() const { return m_failures; }
  // Of each output; empty where nobody asks for them.
  std::vector<ValueCounts>& valueCounts() { return m_counts; }
  bool countsValues() const { return !m_counts.empty(); }
  // The action's routine for all rows after the first one.
  virtual ActionItem::ComputeRoutine routine() const = 0;

 protected:
  // Numbers of outputs that routines are made for, beside 1 to 3.
  static constexpr int kAnyNumber = 0;
  static constexpr int kAnyNumberWithFailures = -1;  // as compute() wants it

  // Points the columns of the input at their values in the row.
  void passColumnsOn(const OneRow& row) {
    std::copy_n(row.getAllColForRead(), row.sz(), m_columns);
  }
  // False: the run must stop.
  template <int kOutputs>
  [[nodiscard]] bool evaluateOutputs() {
    const int outputs = kOutputs <= kAnyNumber ? m_outputCount : kOutputs;
    for (int i = 0; i < outputs; ++i) {
      const RowOutcome outcome = m_evaluation.evaluate(i);
      if (outcome == RowOutcome::stop) {
        return false;
      }
      if constexpr (kOutputs == kAnyNumberWithFailures) {
        if (outcome == RowOutcome::failed) {
          m_failures.push_back(m_evaluation.lastFailure());
        }
      }
    }
    return true;
  }

  RowEvaluation& m_evaluation;
  const int m_outputCount;
  unsigned char** const m_columns;  // of the output row
  std::vector<RowFailure> m_failures;
  std::vector<ValueCounts> m_counts;  // one an output; empty where nobody asks for them
};

}  // namespace kelvarin
