// What the actions share that evaluate expressions on rows: options, variables, one evaluator, the
// step debugger's side, and how failures reach the log and end the run.
//
// Used by Calculator (and the vectorized one) and FilterRows. A derived action plans at its first
// row, with startEvaluator() and compileOutputs(), and then loads and evaluates every row itself.
// Threads: those of ActionItem; the observer is attached and taken away between runs.
// Errors: logged here at level 1, and the run is marked as failed.
#pragma once

#include <span>
#include <vector>

#include "actions/frame/row_observer.h"
#include "expression/errors/eval_command.h"
#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/action_item.h"
#include "host/contract/action_report.h"
#include "host/contract/log_details.h"

namespace kelvarin {

class ExpressionAction : public ActionItem, private FailureListener {
 public:
  // Null takes the observer away. While there is one, every expression takes the String back-end
  // and every row waits.
  void setObserver(RowObserver* observer) { m_observer = observer; }

  // For editors, between runs. A setter leaves what saving and reading the action's XML would.
  const std::vector<InputVariable>& inputVariables() const { return m_inputs; }
  void setInputVariables(std::vector<InputVariable> variables);
  const EvaluationOptions& options() const { return m_options; }
  void setOptions(EvaluationOptions options);
  // What hasFailed() answers until the next run: an editor found the expression to be wrong.
  void setErrorFlag(bool hasError) { m_hasFailed = hasError; }

  // Checks one output as a check of the graph does, with graph parameters replaced and the
  // variables' samples, and logs nothing. In a run and outside of one; variables of a table on the
  // second pin are not known.
  ExpressionCheck check(const OutputVariable& output, ResultUse use) const;

  char init() override;
  // Reports what the user should know at the end of a run, unless an error of its own says it.
  char close() override;
  // Never.
  char canRunInParallel(QString what, bool* reason) override;

 protected:
  enum class RowStep { more, finished, failed };

  using ActionItem::ActionItem;

  bool isObserved() const { return m_observer != nullptr; }
  // Only the columns are asked for, and whether the expressions are right.
  bool isChecking() const { return !mustComputeFull(); }

  // Those of the first row; without any row the ones that the upstream action announced, so that an
  // empty table keeps its header and a check sees the expressions. Null: nothing to plan for.
  const OneRow* columnsToPlanFor(const OneRow* firstRow) const;
  // Configures the evaluator, prepares its dates and finds the variables' columns; vectors have
  // `elementCount` of them. False: logged.
  [[nodiscard]] bool startEvaluator(const OneRow& columns, const std::vector<InputVariable>& inputs,
                                    const QStringList& expressions, int elementCount = 1);
  // Compiles every output, or in a check tries it; all errors are logged. False: there were some.
  [[nodiscard]] bool compileOutputs(const std::vector<OutputVariable>& outputs, ResultUse use);
  // Makes what an observer shows of rows that are not evaluated, as in sampling; a variable whose
  // column is missing is not shown.
  void startShowing(const OneRow& columns);
  // For the observer: the row that was loaded last, with its number and variables, and a failure of
  // it. Before the evaluator advances. The same object for all rows of a run.
  ObservedRow& observedRow(const OneRow& input);
  ObservedFailure observedFailure(const RowFailure& failure) const;
  // Shows the row and waits; false when the user stopped.
  [[nodiscard]] bool showRow(const ObservedRow& row);
  // Shows the row that ends the run with a failure.
  void showLastRow(ObservedRow& row);

  void logError(const QString& text) const;
  // About an output: an error or a warning with its location, and what explains it.
  void logAboutOutput(LogLevel level, const QString& text, int output,
                      const QString& explanation) const;
  QString dateFormatUnknownText() const;
  // The user stopped it, or another action failed.
  bool hasRunEnded() const { return run() != nullptr && !run()->isRunning(); }
  // Logs why the last row stopped, and fails the run.
  RowStep failAtRow();

  long long rowNumber() const { return static_cast<long long>(m_evaluator.rows.rowNumber()); }

  // What differs between the actions: the text about an expression that failed at a row, the one
  // about an expression that did not pass a check, and the warning about the reference time.
  virtual QString expressionFailureText(const RowFailure& failure) const = 0;
  virtual QString checkText(const QString& output, const QString& text) const = 0;
  virtual QString referenceTimeWarning() const = 0;
  // The location of an output in the graph file, and its name where it has one.
  virtual LogDetails detailsOfOutput(int output) const = 0;
  // What became of rows that failed and did not stop the run, for the warning at the end.
  virtual QString failedRowsText(const FailureCount& failures) const;
  // For the report of the run, whose outputs are in the order of the expressions.
  virtual void addValueCounts(std::vector<OutputReport>& /*outputs*/) const {}
  // What the results that an observer sees are called.
  virtual QStringList resultNames() = 0;
  // Whether the action goes on after this failure, which does not stop every run.
  virtual bool goesOnAfter(const RowFailure& /*failure*/) const { return true; }
  // A row that fails stops the run, at least where it is the first one.
  virtual bool mayFailedRowStop() const { return m_options.abortWhenError; }

  std::vector<InputVariable> m_inputs;
  EvaluationOptions m_options;
  ExpressionEvaluator m_evaluator;

 private:
  [[nodiscard]] bool prepareDates(const QStringList& expressions);
  [[nodiscard]] bool checkOutput(int output, ResultUse use);
  [[nodiscard]] bool reportTriedOutput(int output, const ExpressionCheck& check);
  void warnAbout(int output, ResultUse use) const;
  // With the position of the error in the expression, and what may have been meant.
  void logFailure(LogLevel level, const QString& text, int output, const ExpressionError& error,
                  const QString& note = QString()) const;
  // None once an editor has changed the variables.
  XMLNode::Position locationOfInput(int index) const;
  EvaluationOptions expandedOptions() const;
  std::vector<InputVariable> withExpandedLabels(std::vector<InputVariable> inputs) const;
  Status<BindingFailure> bindColumns(const OneRow& columns, int elementCount);
  void reportBindingFailure(const OneRow& columns, const BindingFailure& failure) const;
  void reportTextsAsNumbers(const OneRow& columns) const;
  const OutputVariable& output(int index) const {
    return m_outputsOfRun[static_cast<std::size_t>(index)];
  }
  // The values that its variables have now, as `kelvarin eval` takes them.
  TriedExpression triedExpression(int output) const;
  QString explanation(int output, const ExpressionError& error, const QString& note) const;
  void reportBackends();
  void reportOutputs() const;
  QString reportedName(int output) const;
  QString failureText(const RowFailure& failure) const;
  // Reports the row to those who collect the rejected ones.
  void evaluationFailed(const RowFailure& failure, const OneRow& row) override;

  RowObserver* m_observer = nullptr;
  ObservedRow m_observedRow;
  std::vector<InputVariable> m_variablesOfRun;  // table on the second pin included, names expanded
  std::vector<OutputVariable> m_outputsOfRun;
  std::vector<EngineChoice> m_engines;  // of the outputs, when all have been compiled
  bool m_isRowLoaded = false;           // the variables have the values of a row
  bool m_areInputsEdited = false;       // no longer those of the graph file
};

}  // namespace kelvarin
