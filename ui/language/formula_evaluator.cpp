#include "ui/language/formula_evaluator.h"

#include "expression/errors/error_texts.h"
#include "expression/evaluator/number_text.h"
#include "ui/language/messages.h"
#include "ui/language/outside_sources.h"
#include "ui/language/shown_value.h"

namespace kelvarin {

Formula withParametersReplaced(Formula formula) {
  const GlobalParameters& parameters = formula.parameters;
  TimeParameters& time = formula.options.time;
  time.referenceTime = parameters.expandString2(time.referenceTime);
  time.dateFormat = parameters.expandString2(time.dateFormat);
  formula.output.name = parameters.expandString2(formula.output.name);
  for (InputVariable& variable : formula.variables) {
    variable.label = parameters.expandString2(variable.label);
  }
  return formula;
}

FormulaEvaluator::FormulaEvaluator(const Formula& formula, std::optional<BackendKind> engine)
    : m_formula(formula) {
  expressions().configure(formula.options, formula.variables, &formula.parameters, false);
  expressions().setBounds(bounds());
  for (std::size_t i = formula.variables.size(); i-- > 0;) {
    m_inputs[formula.variables[i].name()] = static_cast<int>(i);
  }
  if (engine) {
    expressions().requireBackend(*engine);
  }
  (void)expressions().prepareDateContext({formula.output.expression});
  if (!hasRows()) {
    return;
  }
  m_view = std::make_unique<PinRowView>(formula.rows->columns());
  const auto expand = [&](const QString& text) { return formula.parameters.expandString2(text); };
  // Variables without a column stay missing; the check of the formula says which.
  (void)expressions().bind(m_view->row(), expand);
}

Status<ExpressionError> FormulaEvaluator::add(const QString& expression, ResultUse use) {
  OutputVariable output = m_formula.output;
  output.expression = expression;
  return expressions().compile(output, use);
}

Status<ExpressionError> FormulaEvaluator::addOutput() {
  return expressions().compile(m_formula.output, m_formula.use);
}

ExpressionCheck FormulaEvaluator::checkOutput() {
  return expressions().checkAndAdd(m_formula.output, m_formula.use);
}

void FormulaEvaluator::goToRow(long long row) {
  expressions().variables().advanceRows(static_cast<double>(row) - m_evaluator.rows.rowNumber());
}

bool FormulaEvaluator::loadRow(std::size_t row) {
  goToRow(m_formula.rows->firstRow() + static_cast<long long>(row));
  const RowOutcome outcome = m_evaluator.rows.loadRow(m_view->show(*m_formula.rows, row));
  m_loadFailure.reset();
  if (outcome != RowOutcome::ok) {
    m_loadFailure = failureText();
  }
  return !m_loadFailure;
}

FormulaEvaluator::Row FormulaEvaluator::loadBestRow() {
  if (!m_formula.current.empty()) {
    loadCurrent();
    return Row::debugger;
  }
  if (hasRows()) {
    loadRow(0);
    return Row::first;
  }
  expressions().loadSamples();
  m_evaluator.rows.startRow();
  return Row::samples;
}

void FormulaEvaluator::loadCurrent() {
  QSet<QString> loaded;  // of a vector the element that comes first
  for (const VariableValue& variable : m_formula.current) {
    if (loaded.contains(variable.name)) {
      continue;
    }
    loaded.insert(variable.name);
    if (variable.name == rowNumberName()) {
      goToRow(static_cast<long long>(variable.value.number));
    }
    setVariable(variable.name, variable.value);
  }
  m_evaluator.rows.startRow();
}

void FormulaEvaluator::setVariable(const QString& name, const ExpressionValue& value) {
  if (const auto input = m_inputs.constFind(name); input != m_inputs.cend()) {
    setValue(*input, value);
  }
}

// In the form that the variable has now, which may have been edited since.
void FormulaEvaluator::setValue(int input, const ExpressionValue& value) {
  const bool isText = value.type == ExpressionValue::Type::text;
  if (kindOf(m_formula.variables[static_cast<std::size_t>(input)]) == VariableKind::text) {
    const QString text = isText           ? value.text
                         : value.isNull() ? QString()
                                          : shortestText(value.number);
    expressions().setText(input, text);
    return;
  }
  const double ofText = numberOfWholeText(value.text.toStdString()).value_or(kNullNumber);
  expressions().setNumber(input, isText ? ofText : value.number);
}

std::optional<ExpressionValue> FormulaEvaluator::variable(const QString& name) const {
  const auto input = m_inputs.constFind(name);
  if (input == m_inputs.cend()) {
    return std::nullopt;
  }
  return m_evaluator.expressions.inputValue(*input);
}

FormulaValue FormulaEvaluator::evaluate(int output) {
  FormulaValue value{.row = rowNumber(), .value = {}, .failure = {}};
  if (m_loadFailure) {
    value.failure = *m_loadFailure;
    return value;
  }
  const CompiledOutput& compiled = this->output(output);
  RowEvaluation& rows = m_evaluator.rows;
  if (compiled.use == ResultUse::truth) {
    bool isTrue = false;
    if (rows.evaluateTruth(output, isTrue) != RowOutcome::ok) {
      value.failure = failureText();
    }
    value.value = {ExpressionValue::Type::boolean, isTrue ? 1.0 : 0.0, {}};
    return value;
  }
  unsigned char* text = nullptr;
  const bool isText = compiled.use == ResultUse::column && !isNumberMeta(compiled.meta);
  rows.setTextTarget(output, isText ? &text : nullptr);
  if (rows.evaluate(output) != RowOutcome::ok) {
    value.failure = failureText();
  } else if (compiled.use == ResultUse::anyValue) {
    value.value = rows.value(output);
  } else {
    value.value = valueOfBytes(compiled.meta, isText ? text : rows.resultCell(output));
  }
  return value;
}

FormulaValue FormulaEvaluator::evaluateOnce(const QString& expression) {
  FormulaValue value;
  value.row = rowNumber();
  if (m_loadFailure) {
    value.failure = *m_loadFailure;
    return value;
  }
  if (auto made = expressions().evaluateOnce(expression)) {
    value.value = std::move(*made);
  } else {
    value.failure = made.error().message;
  }
  return value;
}

QString FormulaEvaluator::failureText() const {
  const RowFailure& failure = m_evaluator.rows.lastFailure();
  switch (failure.kind) {
    case RowFailure::Kind::nullKey:
      return language_messages::nullKey(failure.name);
    case RowFailure::Kind::keyCast:
      return keyOutOfRangeText(failure.name, static_cast<std::int64_t>(failure.row), failure.value);
    case RowFailure::Kind::evaluation:
      break;
  }
  return failure.error.message;
}

}  // namespace kelvarin
