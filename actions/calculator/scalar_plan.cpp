#include "actions/calculator/scalar_plan.h"

#include "actions/calculator/scalar_rows.h"
#include "actions/calculator/variable_table.h"

namespace kelvarin {

Result<TableVariables, QString> ScalarPlan::readTable() {
  TableVariables table;
  if (!m_readsTable) {
    return table;
  }
  if (const auto read = appendVariableTable(m_action, 1, table.variables); !read) {
    return Failure{read.error()};
  }
  return table;
}

std::unique_ptr<RowComputation> ScalarPlan::connect(const OutputColumns& columns) {
  return std::make_unique<ScalarRows>(m_action, m_evaluator, m_outputs, columns);
}

}  // namespace kelvarin
