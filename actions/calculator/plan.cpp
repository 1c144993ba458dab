// The calculator at its first row: variables, columns, expressions, and which routine takes the
// rows.
#include "actions/calculator/calculator.h"
#include "actions/calculator/calculator_plan.h"
#include "actions/calculator/scalar_rows.h"
#include "actions/calculator/variable_table.h"

namespace kelvarin {

namespace {

// Every row of the table is a variable, every output one column.
class ScalarPlan final : public CalculatorPlan {
 public:
  // `outputs` outlive the plan. Without `readsTable` the table is left alone.
  ScalarPlan(ActionItem& action, RowEvaluation& evaluation,
             const std::vector<OutputVariable>& outputs, bool readsTable)
      : m_action(action), m_evaluation(evaluation), m_outputs(outputs), m_readsTable(readsTable) {}

  Result<TableVariables, QString> readTable() override;
  Result<std::vector<OutputVariable>, QString> columnsOf(
      const std::vector<OutputVariable>& outputs) override {
    return outputs;
  }
  std::unique_ptr<RowComputation> connect(const OutputColumns& columns) override;

 private:
  ActionItem& m_action;
  RowEvaluation& m_evaluation;
  const std::vector<OutputVariable>& m_outputs;
  bool m_readsTable;
};

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
  return std::make_unique<ScalarRows>(m_action, m_evaluation, m_outputs, columns);
}

}  // namespace

bool Calculator::computeFirstRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  const OneRow* columns = self.columnsToPlanFor(row);
  if (columns == nullptr) {
    return true;
  }
  if (!self.plan(*columns)) {
    if (!self.hasRunEnded()) {
      self.failRun();
    }
    return true;
  }
  if (row == nullptr || self.isChecking()) {
    return true;
  }
  if (self.isObserved()) {
    self.computeRoutine = &Calculator::computeObservedRow;
    return self.computeAndShow(*row) != RowStep::more;
  }
  self.computeRoutine = self.m_rows->routine();
  return self.endRow(self.m_rows->compute(*row)) != RowStep::more;
}

std::unique_ptr<CalculatorPlan> Calculator::makePlan() {
  return std::make_unique<ScalarPlan>(*this, m_evaluator.rows, m_outputs, !isObserved());
}

bool Calculator::plan(const OneRow& columns) {
  const std::unique_ptr<CalculatorPlan> plan = makePlan();
  auto table = plan->readTable();
  if (!table) {
    if (!table.error().isEmpty()) {
      logError(table.error());
    }
    return false;
  }
  std::vector<InputVariable> variables = m_inputs;
  std::move(table->variables.begin(), table->variables.end(), std::back_inserter(variables));
  const std::vector<OutputVariable> outputs = outputsToCompile();
  const auto newColumns = plan->columnsOf(outputs);
  if (!newColumns) {
    logError(newColumns.error());
    return false;
  }
  QStringList expressions;
  for (const OutputVariable& output : outputs) {
    expressions += output.expression;
  }
  const bool isBound = startEvaluator(columns, variables, expressions, table->elementCount);
  const auto outputColumns = layOutColumns(columns, newColumns.value());
  if (!outputColumns) {
    logLayoutFault(outputColumns.error());
    return false;
  }
  // The columns are known even where an expression is wrong, so a check can go on below this
  // action.
  buildOutputRow(outputColumns.value());
  if (!isBound || !compileOutputs(outputs, ResultUse::column)) {
    return false;
  }
  if (!isChecking()) {
    m_rows = plan->connect(outputColumns.value());
    m_stage = CalculatorStage::of(m_evaluator.expressions, outputColumns.value(), run());
  }
  return true;
}

// The vectorized calculator has several columns an output.
void Calculator::logLayoutFault(const LayoutFault& fault) const {
  logAboutOutput(LogLevel::error, fault.text, static_cast<int>(fault.output % m_outputs.size()),
                 fault.explanation);
}

// With graph parameters in the names replaced.
std::vector<OutputVariable> Calculator::outputsToCompile() const {
  std::vector<OutputVariable> outputs = m_outputs;
  for (OutputVariable& output : outputs) {
    output.name = expandString(output.name);
  }
  return outputs;
}

void Calculator::buildOutputRow(const OutputColumns& columns) {
  OneRow* row = getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(columns.names.size()));
  row->setColName(columns.names);
  row->setMetaData(columns.metas);
  row->setSortInfos(columns.sortOrder);
  announceColumnsOfOutputPin(0);
  m_computedColumns = columns.columnOfOutput;
}

}  // namespace kelvarin
