// The plan of a vectorized calculator: the table groups columns into vectors, and every output
// yields a column for each element, named by its name expression.
#pragma once

#include "actions/calculator/calculator_plan.h"
#include "actions/calculator_vectorized/column_names.h"
#include "actions/calculator_vectorized/shared_vector_table.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {

class VectorPlan final : public CalculatorPlan {
 public:
  // The tables of the action and, where it is a copy, of the primary that reads for it.
  struct Tables {
    SharedVectorTable& own;
    SharedVectorTable* ofPrimary;  // null: the action reads its own
  };

  VectorPlan(ActionItem& action, ExpressionEvaluator& evaluator, Tables tables, NamingRules rules)
      : m_action(action), m_evaluator(evaluator), m_tables(tables), m_rules(std::move(rules)) {}

  Result<TableVariables, QString> readTable() override;
  Result<std::vector<OutputVariable>, QString> columnsOf(
      const std::vector<OutputVariable>& outputs) override;
  std::unique_ptr<RowComputation> connect(const OutputColumns& columns) override;

 private:
  Status<QString> readOwnTable();
  Status<QString> takeTableOfPrimary();
  void reportColumns(const QStringList& names) const;

  ActionItem& m_action;
  ExpressionEvaluator& m_evaluator;
  Tables m_tables;
  NamingRules m_rules;
  VectorTable m_vectors;
};

}  // namespace kelvarin
