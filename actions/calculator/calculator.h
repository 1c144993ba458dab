// Adds or updates columns: every output is an expression over variables that are bound to columns
// of the row.
//
// Pin 0 takes the rows, pin 1 an optional table of further variables. plan.cpp works at the first
// row, row.cpp at every row; calculator.cpp has the parameters and their XML. Where the producer has
// rows in hand, ahead.cpp evaluates for many of them at once what can be, and the rows then take
// their results from there. CalculatorVectorized derives from it: each of its outputs gives a column
// for every element of its vectors.
// Threads: those of ActionItem.  Errors: logged at level 1, the run fails.
#pragma once

#include <algorithm>
#include <vector>

#include "actions/calculator/computed_rows.h"
#include "actions/calculator/output_columns.h"
#include "actions/frame/catalogued.h"
#include "actions/frame/expression_action.h"
#include "host/contract/lookout.h"
#include "expression/errors/error_texts.h"

namespace kelvarin {

class Calculator : public Catalogued<Calculator, ExpressionAction> {
 public:
  Calculator(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;
  std::vector<ElementFault> settingFaults() const override;

 protected:
  // `newName` is what a new output is called: its expression may stay empty.
  Calculator(XMLNode node, GlobalParameters* parameters, const QString& newName);

  using NewColumns = Result<std::vector<OutputVariable>, QString>;

  // At the first row. False: logged, or the run has ended.
  [[nodiscard]] virtual bool readVariableTable();
  // The columns that `outputs` give, their names final. The error is the text to log.
  virtual NewColumns columnsOfOutputs(const std::vector<OutputVariable>& outputs);
  // Makes the columns of the output row point at their results.
  virtual void connectResults(const OutputColumns& columns);
  // Works with any plan; the routine that is chosen for all rows does the same faster.
  virtual RowStep evaluateRowOfAnyPlan(const OneRow& row);
  virtual ComputeRoutine routineForRows() const;

  // Puts the columns of the input into the output row, and gives its places.
  unsigned char** passColumnsOn(const OneRow& row) {
    unsigned char** places = getOutputRowForOutputPin(0)->getAllColForWrite();
    std::copy_n(row.getAllColForRead(), row.sz(), places);
    return places;
  }
  // False: the run must stop.
  template <int kOutputs>
  bool evaluateOutputs() {
    const int outputs = kOutputs == kAnyNumber ? m_evaluator.expressions.outputCount() : kOutputs;
    for (int i = 0; i < outputs; ++i) {
      if (m_evaluator.rows.evaluate(i) == RowOutcome::stop) {
        return false;
      }
    }
    return true;
  }
  RowStep publishRow() {
    setRowReadyForOutput(0);
    m_evaluator.rows.advanceRow();
    return RowStep::more;
  }

  static constexpr int kAnyNumber = 0;  // of outputs

  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;
  QString referenceTimeWarning() const override;
  LogDetails detailsOfOutput(int output) const override;

  FailureLocation placeOf(const RowFailure& failure) const;

  std::vector<OutputVariable> m_outputs;
  std::vector<InputVariable> m_variables;  // of the run: the action's own, then those of the table
  int m_elementCount = 1;                  // of each vector among them

 private:
  // A number that updates a column: the column's pointer is that of the input row until it is set
  // to the result.
  struct UpdatedNumber {
    unsigned char* result;
    int column;
  };

  // The results of an output for the rows evaluated ahead.
  struct ColumnAhead {
    unsigned char* next;
    std::size_t step;
    int column;
    unsigned char* cell;  // where its results are when rows are evaluated one by one
  };

  // Outputs without a name are errors; without an expression they are warned about.
  [[nodiscard]] bool areOutputsWhole() const;
  void logLayoutFault(const LayoutFault& fault) const;
  static bool computeFirstRow(ActionItem* action);
  [[nodiscard]] bool plan(const OneRow& columns);
  std::vector<OutputVariable> outputsToCompile() const;
  void buildOutputRow(const OutputColumns& columns);

  template <int kOutputs, bool kUpdatesNumbers>
  static bool computeRow(ActionItem* action);
  template <int kOutputs, bool kUpdatesNumbers>
  RowStep evaluateRow(const OneRow& row);
  // The row has results from before, or it and others get them now.
  bool isEvaluatedAhead() {
    return m_rowsEvaluated > 0 || (m_lookout.isDue() && evaluateAhead());
  }
  bool evaluateAhead();
  static void takeRows(ActionItem* action, std::size_t count);
  void connectResultsAhead();
  void disconnectResultsAhead();
  RowStep publishEvaluatedRow(const OneRow& row);
  static bool computeObservedRow(ActionItem* action);
  RowStep evaluateObservedRow(const OneRow& row);

  std::vector<int> m_columnOfOutput;
  std::vector<UpdatedNumber> m_updatedNumbers;

  Lookout m_lookout;
  bool m_mustLoadRows = true;       // those evaluated ahead
  std::size_t m_rowsEvaluated = 0;  // ahead, and not published yet
  std::vector<ColumnAhead> m_columnsAhead;
  std::vector<int> m_outputsByRow;  // all others
  ComputedRows m_computedRows;
};

}  // namespace kelvarin
