// Adds or updates columns: every output is an expression over variables that are bound to columns
// of the row.
//
// Pin 0 takes the rows, pin 1 an optional table of further variables. calculator.cpp has the
// parameters and their XML, plan.cpp the first row, row.cpp the rows that a step debugger watches.
// CalculatorVectorized derives from it: what each of the two does in its own way is in the
// CalculatorPlan and the RowComputation that it makes for a run. Whole batches go through the
// CalculatorStage of both.
// Threads: those of ActionItem.
// Errors: logged at level 1, the run fails.
#pragma once

#include <memory>
#include <vector>

#include "actions/calculator/calculator_plan.h"
#include "actions/calculator/calculator_stage.h"
#include "actions/calculator/output_columns.h"
#include "actions/calculator/row_computation.h"
#include "actions/frame/catalogued.h"
#include "actions/frame/expression_action.h"
#include "expression/errors/error_texts.h"
#include "host/contract/batch_steps.h"
#include "host/contract/column_user.h"
#include "host/contract/named_pins.h"

namespace kelvarin {

class Calculator : public Catalogued<Calculator, ExpressionAction>,
                   public BatchTransform,
                   public ColumnUser,
                   public NamedPins {
 public:
  Calculator(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;
  std::vector<ElementFault> settingFaults() const override;

  // For editors; see ExpressionAction. At least one output is left.
  const std::vector<OutputVariable>& outputVariables() const { return m_outputs; }
  void setOutputVariables(std::vector<OutputVariable> outputs);

  ColumnFate followColumn(const QString& oldName, const QString& newName) override;
  bool renameMadeColumn(const QString& oldName, const QString& newName) override;
  void renameParameter(const QString& oldName, const QString& newName) override;
  QStringList expressions() const override;
  QString pinName(int pin, bool isOutput) const override;

  const BatchStage* stage() const override {
    return m_evaluator.rows.shouldGoRowByRow() ? nullptr : m_stage.get();
  }
  void passRows(std::size_t count) override { m_evaluator.rows.advanceRows(count); }
  void countRows(const StageResult& result, std::size_t begin, std::size_t end) override;

  // For row computations: the routine of one whose type is known, without a virtual call a row.
  template <typename Rows, bool (Rows::*kCompute)(const OneRow&)>
  static bool computeRow(ActionItem* action) {
    auto& self = static_cast<Calculator&>(*action);
    const OneRow* row = self.getNextRowFromInPin(0);
    return row == nullptr || self.endRow((rowsOf<Rows>(self).*kCompute)(*row)) != RowStep::more;
  }
  // The computation of the run, which is one of that type.
  template <typename Rows>
  static Rows& rowsOf(ActionItem& action) {
    return static_cast<Rows&>(*static_cast<Calculator&>(action).m_rows);
  }

 protected:
  // `newName` is what a new output is called: its expression may stay empty.
  Calculator(XMLNode node, GlobalParameters* parameters, const QString& newName);

  // For the run that begins, at its first row.
  virtual std::unique_ptr<CalculatorPlan> makePlan();

  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;
  QString referenceTimeWarning() const override;
  LogDetails detailsOfOutput(int output) const override;
  void addValueCounts(std::vector<OutputReport>& outputs) const override;
  QStringList resultNames() override;

  FailureLocation locationOf(const RowFailure& failure) const;

  std::vector<OutputVariable> m_outputs;

 private:
  // Outputs without a name are errors; without an expression they are warned about.
  [[nodiscard]] bool areOutputsWhole() const;
  void logLayoutFault(const LayoutFault& fault) const;
  static bool computeFirstRow(ActionItem* action);
  [[nodiscard]] bool plan(const OneRow& columns);
  std::vector<OutputVariable> outputsToCompile() const;
  void buildOutputRow(const OutputColumns& columns);

  RowStep publishRow() {
    setRowReadyForOutput(0);
    m_evaluator.rows.advanceRow();
    return RowStep::more;
  }
  // Publishes the row, or logs why it must not be.
  RowStep endRow(bool isComputed) {
    if (!isComputed) [[unlikely]] {
      return failAtRow();
    }
    return publishRow();
  }
  static bool computeObservedRow(ActionItem* action);
  RowStep computeAndShow(const OneRow& row);
  void showResults(std::vector<ExpressionValue>& results);

  bool m_areOutputsEdited = false;  // no longer those of the graph file
  std::unique_ptr<RowComputation> m_rows;
  std::unique_ptr<const CalculatorStage> m_stage;  // of the run; null: row by row
  std::vector<int> m_computedColumns;              // of the output row
};

}  // namespace kelvarin
