// An editor's own evaluator for the expressions of a formula, with the values of one of its rows.
//
// Never the running action's. Files are not read, and the memory for texts is bounded.
// Threads: one at a time.
#pragma once

#include <memory>
#include <optional>

#include <QHash>

#include "expression/evaluator/expression_evaluator.h"
#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"
#include "ui/language/pin_row_view.h"

namespace kelvarin {

// As the actions have it before a run: graph parameters replaced in names and settings.
Formula withParametersReplaced(Formula formula);

class FormulaEvaluator {
 public:
  // Files count as missing, and all texts of an evaluation take 64 MiB at most.
  static EvaluationBounds bounds() {
    return {.readsFiles = false, .textBytes = std::size_t{64} << 20};
  }

  // The parameters are replaced. `engine`: only this one is tried.
  explicit FormulaEvaluator(const Formula& formula,
                            std::optional<BackendKind> engine = std::nullopt);

  // Adds a part of the formula's expression, or all of it, before start().
  Status<ExpressionError> add(const QString& expression, ResultUse use);
  Status<ExpressionError> addOutput();
  // Adds the formula's own expression where it compiles, and evaluates it with the samples.
  ExpressionCheck checkOutput();
  bool hasOutput() const { return m_evaluator.expressions.outputCount() > 0; }
  void start() { m_evaluator.start(); }

  bool hasRows() const { return m_formula.rows != nullptr && m_formula.rows->rowCount() > 0; }
  // False: the failure says which variable stops the run there.
  bool loadRow(std::size_t row);
  // The debugger's row, else the first one, else the samples.
  enum class Row { debugger, first, samples };
  Row loadBestRow();

  // Of the row that was loaded last.
  FormulaValue evaluate(int output);
  // Compiled for this once, before start() or after it.
  FormulaValue evaluateOnce(const QString& expression);
  // Gives a variable of the formula another value, in the form that it has.
  void setVariable(const QString& name, const ExpressionValue& value);
  long long rowNumber() const { return static_cast<long long>(m_evaluator.rows.rowNumber()); }
  // The values of the variables; nothing for other names.
  std::optional<ExpressionValue> variable(const QString& name) const;
  const CompiledOutput& output(int index) const { return m_evaluator.expressions.output(index); }

 private:
  ExpressionSet& expressions() { return m_evaluator.expressions; }
  void loadCurrent();
  void setValue(int input, const ExpressionValue& value);
  void goToRow(long long row);
  QString failureText() const;

  const Formula& m_formula;
  QHash<QString, int> m_inputs;  // by their names; of two the first one
  ExpressionEvaluator m_evaluator;
  std::unique_ptr<PinRowView> m_view;  // null without rows
  std::optional<QString> m_loadFailure;
};

}  // namespace kelvarin
