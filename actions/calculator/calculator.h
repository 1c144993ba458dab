// Adds or updates columns: every output is an expression over variables that are bound to columns
// of the row.
//
// Pin 0 takes the rows, pin 1 an optional table of further variables. plan.cpp works at the first
// row, row.cpp at every row; calculator.cpp has the parameters and their XML. Threads: those of
// ActionItem.  Errors: logged at level 1, the run fails.
#pragma once

#include <vector>

#include "actions/calculator/output_columns.h"
#include "actions/frame/catalogued.h"
#include "actions/frame/expression_action.h"

namespace kelvarin {

class Calculator : public Catalogued<Calculator, ExpressionAction> {
 public:
  Calculator(XMLNode node, GlobalParameters* parameters);

  static const CatalogueEntry& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;

 protected:
  // `newName` is what a new output is called: its expression may stay empty.
  Calculator(XMLNode node, GlobalParameters* parameters, const QString& newName);

  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;
  QString referenceTimeWarning() const override;
  std::span<const KnownElements> knownElements() const override;

 private:
  static constexpr int kAnyNumber = 0;  // of outputs

  // A number that updates a column: the column's pointer is that of the input row until it is set
  // to the result.
  struct UpdatedNumber {
    unsigned char* result;
    int column;
  };

  static bool computeFirstRow(ActionItem* action);
  [[nodiscard]] bool plan(const OneRow& columns);
  [[nodiscard]] bool readVariableTable();
  std::vector<OutputVariable> outputsToCompile() const;
  void buildOutputRow(const OutputColumns& columns);
  void connectResults(const OutputColumns& columns);
  ComputeRoutine routineForRows() const;

  template <int kOutputs, bool kUpdatesNumbers>
  static bool computeRow(ActionItem* action);
  template <int kOutputs, bool kUpdatesNumbers>
  RowStep evaluateRow(const OneRow& row);
  static bool computeObservedRow(ActionItem* action);
  RowStep evaluateObservedRow(const OneRow& row);

  std::vector<OutputVariable> m_outputs;
  std::vector<InputVariable> m_variables;  // of the run: the action's own, then those of the table
  std::vector<int> m_columnOfOutput;
  std::vector<UpdatedNumber> m_updatedNumbers;
};

}  // namespace kelvarin
