// What the expressions of a command line compute over the columns of a table: every name bound to
// its column, every type known, and the outputs divided among as many calculators as they need.
//
// An output may use and replace those before it. Outputs stay in their order, so a new calculator
// begins where one uses or replaces an output of the last one.
// Used by: calc_command.cpp.
// Threads: one at a time.
// Errors: an ExpressionFault; nothing is logged.
#pragma once

#include <vector>

#include <QHash>
#include <QSet>
#include <QString>

#include "cli/calc/column_labels.h"
#include "cli/calc/named_expression.h"
#include "expression/evaluator/compiled_output.h"
#include "expression/evaluator/expression_check.h"
#include "expression/evaluator/variables.h"
#include "host/contract/global_parameters.h"
#include "host/contract/pin_columns.h"

namespace kelvarin {

struct CalculatorPlan {
  std::vector<InputVariable> inputs;
  std::vector<OutputVariable> outputs;
};

struct FilterPlan {
  std::vector<InputVariable> inputs;
  QString condition;
};

struct ExpressionFault {
  QString purpose;     // of the expression
  QString expression;  // as it was typed
  QString labelled;  // the same as it is compiled; null where the fault is not one of the language
  QString text;
  ExpressionError error;
};

class Calculation {
 public:
  // The parameters are known by their names in every expression. All expressions are given as they
  // were typed. `dates` are columns of texts, or outputs, that enter expressions as elapsed times.
  Calculation(const std::vector<PinColumns::Column>& columns, const EvaluationOptions& options,
              const GlobalParameters& parameters, const QStringList& expressions,
              const QStringList& dates);

  Status<ExpressionFault> addOutput(const NamedExpression& output);
  // A condition for the rows with all outputs that were added.
  Status<ExpressionFault> addFilter(const QString& condition);
  // Whether the dates are texts, once all outputs are there; the error says what is wrong.
  Status<QString> checkDates() const;

  const std::vector<CalculatorPlan>& calculators() const { return m_calculators; }
  const std::vector<FilterPlan>& filters() const { return m_filters; }
  const EvaluationOptions& options() const { return m_options; }
  const ColumnLabels& labels() const { return m_labels; }
  // With those of the outputs that were added.
  const QStringList& columnNames() const { return m_names; }

 private:
  using Inputs = std::vector<InputVariable>;

  Result<Inputs, ExpressionFault> inputsOf(const QString& labelled, ExpressionFault fault);
  bool isBound(const QString& name) const;
  ExpressionCheck checked(const Inputs& inputs, const OutputVariable& output, ResultUse use);
  // As the result of an expression says it.
  MetaTypeColumn typeOf(const QString& labelled, const ExpressionCheck& check) const;
  bool needsCalculator(const Inputs& inputs, const QString& output) const;
  void take(Inputs inputs, OutputVariable output);

  EvaluationOptions m_options;
  const GlobalParameters& m_parameters;
  const QStringList m_dates;
  QStringList m_names;                     // of the columns, in their order
  QHash<QString, MetaTypeColumn> m_types;  // of these
  QSet<QString> m_unused;                  // outputs that no expression has used so far
  ColumnLabels m_labels;
  std::vector<CalculatorPlan> m_calculators;
  std::vector<FilterPlan> m_filters;
};

}  // namespace kelvarin
