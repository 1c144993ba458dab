// The property editor of Calculator and CalculatorVectorized.
//
// The outputs are tabs; the fields below show the current one. A vectorized calculator names its
// columns by an expression, and reads its vectors from pin 1.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include "actions/calculator/calculator.h"
#include "ui/editors/expression_action_editor.h"
#include "ui/editors/output_list.h"
#include "ui/editors/pin_table.h"

class QSpinBox;

namespace kelvarin {

class OutputBar;
class OutputFields;

class Interface_actionMathParser : public ExpressionActionEditor {
  Q_OBJECT

 public:
  enum Mode { kCalculator = 0, kVectorized = 1 };

  Interface_actionMathParser(QWidget* parent, Calculator& action, int mode);
  ~Interface_actionMathParser() override;

  bool isBusy() const override { return ExpressionActionEditor::isBusy() || m_pinTable->isBusy(); }

 public slots:
  void delete_outputVar(int output);
  // Leads to the field of the name.
  void name_outputVar(int output);
  // Checks the expressions of all outputs, and leads to the first one that is wrong.
  void checkCurrentOutputVars();

 protected:
  Formula formula() const override;
  void load() override;
  bool store() override;
  void commitExpression() override;
  void checkExpressions() override { checkCurrentOutputVars(); }
  QStringList expressions() const override;
  void updateFormula() override;
  void showVerdict(int index, const FormulaAnswer* failure) override;
  void renameVariable(const QString& from, const QString& to) override;
  void showOutputNamed(const QString& name) override;

 private:
  bool isVectorized() const { return m_mode == kVectorized; }
  QWidget* makeVectors();
  void connectOutputs();

  // Fills the fields with the current output.
  void showOutput();
  void showTabs();
  void chooseOutput(int output);
  void addOutput();
  void moveOutput(bool isLeft);
  void leaveOutput();
  void takeNameAndNotes();
  void followName();
  void checkCommitted();
  void outputsEdited();
  void writeOutputs();

  Formula formulaOf(const OutputVariable& output) const;
  Formula nameFormula(const QString& expression) const;
  // Whose values are shown below the expression.
  int shownElement() const;
  // Those of the table that expressions name and that are no input variables of the action.
  std::vector<InputVariable> lackingVariables() const;
  void takeTableOver();
  void updatePinTable();
  void updateNames();

  Calculator& m_action;
  const int m_mode;
  PinTable* m_pinTable;
  OutputBar* m_bar;
  OutputFields* m_fields;
  OutputList m_outputs;
  QSpinBox* m_element = nullptr;  // null where there are no vectors
  std::vector<int> m_checked;     // the outputs that the validation has, in its order
  std::vector<QString> m_checkedExpressions;
  bool m_isFailureShown = false;  // of the check under way
  bool m_isCheckDue = false;      // as soon as the table is read
  bool m_areOutputsEdited = false;
};

}  // namespace kelvarin
