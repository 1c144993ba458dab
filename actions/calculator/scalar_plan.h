// The plan of the calculator: every row of the table is a variable, every output one column.
#pragma once

#include "actions/calculator/calculator_plan.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {

class ScalarPlan final : public CalculatorPlan {
 public:
  // `outputs` outlive the plan. Without `readsTable` the table is left alone.
  ScalarPlan(ActionItem& action, ExpressionEvaluator& evaluator,
             const std::vector<OutputVariable>& outputs, bool readsTable)
      : m_action(action), m_evaluator(evaluator), m_outputs(outputs), m_readsTable(readsTable) {}

  Result<TableVariables, QString> readTable() override;
  Result<std::vector<OutputVariable>, QString> columnsOf(
      const std::vector<OutputVariable>& outputs) override {
    return outputs;
  }
  std::unique_ptr<RowComputation> connect(const OutputColumns& columns) override;

 private:
  ActionItem& m_action;
  ExpressionEvaluator& m_evaluator;
  const std::vector<OutputVariable>& m_outputs;
  bool m_readsTable;
};

}  // namespace kelvarin
