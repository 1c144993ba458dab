// How a calculator computes the rows of one run, into the columns of its output row.
//
// Made at the first row by the action's CalculatorPlan: ScalarRows computes one column an output,
// VectorRows one for every element of the action's vectors.
#pragma once

#include <algorithm>

#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class RowComputation {
 public:
  RowComputation(ActionItem& action, ExpressionEvaluator& evaluator)
      : m_action(action),
        m_evaluator(evaluator),
        m_columns(action.getOutputRowForOutputPin(0)->getAllColForWrite()) {}
  virtual ~RowComputation() = default;

  // Works with any plan; the routine does the same faster. False: the run must stop.
  [[nodiscard]] virtual bool compute(const OneRow& row) = 0;
  // The action's routine for all rows behind the first one.
  virtual ActionItem::ComputeRoutine routine() const = 0;

 protected:
  static constexpr int kAnyNumber = 0;  // of outputs

  // Points the columns of the input at their values in the row.
  void passColumnsOn(const OneRow& row) {
    std::copy_n(row.getAllColForRead(), row.sz(), m_columns);
  }
  // False: the run must stop.
  template <int kOutputs>
  [[nodiscard]] bool evaluateOutputs() {
    const int outputs = kOutputs == kAnyNumber ? m_evaluator.outputCount() : kOutputs;
    for (int i = 0; i < outputs; ++i) {
      if (m_evaluator.evaluate(i) == RowOutcome::stop) {
        return false;
      }
    }
    return true;
  }

  ActionItem& m_action;
  ExpressionEvaluator& m_evaluator;
  unsigned char** const m_columns;  // of the output row
};

}  // namespace kelvarin
