// The expressions of one action with their variables and options: configured, bound to columns,
// checked and compiled, each for the first engine that takes it.
//
// Part of ExpressionEvaluator; an editor's check needs nothing else.
// Order of calls: configure, prepareDateContext, bind unless the values are set by hand, compile
// for every output. check() stands alone after configure.
// Errors: values and statuses; nothing is logged and nothing throws.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/backends/expression_scope.h"
#include "expression/backends/string_backend.h"
#include "expression/backends/variable_store.h"
#include "expression/dates/date_status.h"
#include "expression/evaluator/compiled_output.h"
#include "expression/evaluator/constants.h"
#include "expression/evaluator/expression_check.h"
#include "expression/evaluator/row_binding.h"
#include "expression/evaluator/variables.h"
#include "host/contract/global_parameters.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class ExpressionSet {
 public:
  ExpressionSet() = default;
  ExpressionSet(const ExpressionSet&) = delete;
  ExpressionSet& operator=(const ExpressionSet&) = delete;

  // Forgets everything that configure() and later calls built.
  void clear();

  // `isObserved`: a step debugger is attached, so every expression takes the String back-end.
  // `parameters` may be null; they outlive the use of this object.
  void configure(const EvaluationOptions& options, const std::vector<InputVariable>& inputs,
                 const GlobalParameters* parameters, bool isObserved);
  // Only this engine is tried; that it refuses an expression is an error, never a fallback.
  void requireBackend(BackendKind kind) { m_required = kind; }
  // For what is compiled later.
  void setBounds(const EvaluationBounds& bounds) { m_functions.bounds = bounds; }

  // Seeds the random generators, and fixes reference time and date format where the expressions
  // need them.
  DateStatus prepareDateContext(const QStringList& expressions);
  // What to do about a reference time that cannot be parsed.
  QString referenceTimeAdvice() const;
  // What to warn about when a date format is needed and looks like another pattern language's.
  QString dateFormatAdvice() const { return m_functions.dates.formatAdvice(); }

  // Finds the columns of every variable; `expand` replaces graph parameters in their names.
  // `elementCount`: so many columns has each variable that is a vector. After a failure the
  // variables whose columns were found can be shown nevertheless.
  Status<BindingFailure> bind(const OneRow& columns, const RowBinding::Expand& expand,
                              int elementCount = 1);

  // Adds an output.
  Status<ExpressionError> compile(const OutputVariable& output, ResultUse use = ResultUse::column);
  // Prepares the dates, compiles and evaluates once with the variables' samples. No output is
  // added.
  ExpressionCheck check(const OutputVariable& output, ResultUse use = ResultUse::column);
  // The same, and the output is added where it compiles.
  ExpressionCheck checkAndAdd(const OutputVariable& output, ResultUse use = ResultUse::column);

  // With the values that the variables have now, of whatever type. No output is added.
  Result<ExpressionValue, ExpressionError> evaluateOnce(const QString& expression);

  int outputCount() const { return static_cast<int>(m_outputs.size()); }
  const CompiledOutput& output(int index) const {
    return *m_outputs[static_cast<std::size_t>(index)];
  }
  BackendKind backend(int output) const { return this->output(output).engine.engine; }

  const EvaluationOptions& options() const { return m_options; }
  const std::vector<InputVariable>& inputs() const { return m_inputs; }
  // `_now` and `_nowS` among them, where they are offered.
  const std::vector<NamedConstant>& constants() const { return m_constants; }
  const DateContext& dates() const { return m_functions.dates; }
  const FunctionContext& functions() const { return m_functions; }

  // For those that load values: where they go.
  VariableStore& variables() { return m_variables; }
  const VariableStore& variables() const { return m_variables; }
  RowBinding& binding() { return m_binding; }
  const RowBinding& binding() const { return m_binding; }
  StringBackend& stringBackend() { return *m_stringBackend; }
  // Values by hand. The index is the variable's in the list given to configure().
  void setNumber(int input, double value);
  void setText(int input, const QString& value);  // a null QString is the null text
  // Those of all variables, as a check has them.
  void loadSamples();
  // The value that was loaded last, before any expression assigned to it.
  ExpressionValue inputValue(int input) const;

 private:
  using MadeOutput = Result<std::unique_ptr<CompiledOutput>, ExpressionError>;

  MadeOutput makeOutput(const OutputVariable& variable, ResultUse use);
  void addColumnProgram(CompiledOutput& output, const QString& expression);
  ExpressionCheck tryOut(const OutputVariable& output, ResultUse use,
                         std::unique_ptr<CompiledOutput>& made);
  ExpressionCheck evaluateSamples(CompiledOutput& output);
  bool hasDateInputs() const;

  EvaluationOptions m_options;
  std::vector<InputVariable> m_inputs;
  std::vector<std::size_t> m_indices;  // of each input in `m_variables`
  std::vector<std::string> m_texts;    // that were set by hand, one an input
  bool m_isObserved = false;
  std::optional<BackendKind> m_required;
  std::optional<std::uint32_t> m_seedOfRun;  // of actions without a seed of their own; else a clock

  VariableStore m_variables;
  std::vector<NamedConstant> m_constants = constantsOf(nullptr);
  FunctionContext m_functions;
  std::unique_ptr<StringBackend> m_stringBackend = std::make_unique<StringBackend>();
  RowBinding m_binding;
  std::vector<std::unique_ptr<CompiledOutput>> m_outputs;  // gone before what they refer to
};

}  // namespace kelvarin
