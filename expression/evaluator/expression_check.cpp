// The check of an expression: compiled and evaluated once with the variables' samples.
#include "expression/evaluator/expression_check.h"

#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/expression_warnings.h"

namespace kelvarin {

namespace {

using Kind = ExpressionCheck::Kind;

// About the result or the settings, not about a token.
void setFault(ExpressionCheck& check, Kind kind, ExpressionError::Kind what, const QString& text) {
  check.kind = kind;
  check.text = text;
  check.error = {.message = text, .kind = what};
}

void judgeType(ExpressionCheck& check, const EvaluatedValue& value, MetaTypeColumn meta) {
  if (isNumberMeta(meta) != value.isText()) {
    return;
  }
  if (value.isText()) {
    setFault(check, Kind::error, ExpressionError::Kind::textForNumber, messages::stringForNumber());
  } else {
    setFault(check, Kind::warning, ExpressionError::Kind::numberForText,
             messages::numberForString());
  }
}

}  // namespace

ExpressionCheck ExpressionCheck::failure(const ExpressionError& error) {
  ExpressionCheck check;
  check.kind = Kind::error;
  check.text = checkErrorText(error);
  check.error = error;
  return check;
}

ExpressionCheck ExpressionCheck::failure(const QString& text) {
  ExpressionCheck check;
  check.kind = Kind::error;
  check.text = text;
  check.error.message = text;
  return check;
}

ExpressionCheck ExpressionCheck::unknownDateFormat() {
  ExpressionCheck check;
  setFault(check, Kind::error, ExpressionError::Kind::dateFormatUnknown, messages::formatUnknown());
  return check;
}

void ExpressionCheck::setWarnings(const QStringList& texts) {
  warnings = texts;
  if (kind == Kind::fine && !warnings.isEmpty()) {
    kind = Kind::warning;
  }
}

void ExpressionSet::loadSamples() {
  for (std::size_t i = 0; i < m_inputs.size(); ++i) {
    const InputVariable& input = m_inputs[i];
    if (kindOf(input) == VariableKind::text) {
      setText(static_cast<int>(i), input.text);
    } else {
      setNumber(static_cast<int>(i),
                input.isNumber ? input.number : m_functions.dates.toElapsedTime(input.text));
    }
  }
}

ExpressionCheck ExpressionSet::check(const OutputVariable& output, ResultUse use) {
  std::unique_ptr<CompiledOutput> made;
  return tryOut(output, use, made);
}

ExpressionCheck ExpressionSet::checkAndAdd(const OutputVariable& output, ResultUse use) {
  std::unique_ptr<CompiledOutput> made;
  ExpressionCheck check = tryOut(output, use, made);
  if (made != nullptr) {
    m_outputs.push_back(std::move(made));
  }
  return check;
}

ExpressionCheck ExpressionSet::tryOut(const OutputVariable& output, ResultUse use,
                                      std::unique_ptr<CompiledOutput>& made) {
  const DateStatus dates = prepareDateContext({output.expression});
  if (dates == DateStatus::dateFormatUnknown) {
    return ExpressionCheck::unknownDateFormat();
  }
  loadSamples();
  MadeOutput compiled = makeOutput(output, use);
  if (!compiled) {
    return ExpressionCheck::failure(compiled.error());
  }
  made = std::move(*compiled);
  ExpressionCheck check = evaluateSamples(*made);
  if (dates == DateStatus::referenceTimeUnparsable && check.kind != Kind::error &&
      check.text.isEmpty()) {
    setFault(check, Kind::warning, ExpressionError::Kind::referenceTimeUnparsable,
             messages::referenceUnparsable());
  }
  return check;
}

ExpressionCheck ExpressionSet::evaluateSamples(CompiledOutput& output) {
  m_stringBackend->load(m_variables);
  CompiledExpression& expression = *output.expression;
  EvaluatedValue value;
  ExpressionCheck check;
  if (!expression.evaluate(value)) {
    check = ExpressionCheck::failure(withPosition(expression.error(), output.text));
    check.engine = output.engine;
    return check;
  }
  check.engine = output.engine;
  check.value = valueOf(value);
  if (output.use == ResultUse::column) {
    judgeType(check, value, output.meta);
  }
  QStringList warnings = warningsOfCheck(output.name, expression.textArguments());
  if (output.use == ResultUse::truth && value.isText()) {
    warnings += warningAboutTextCondition(output.name);
  }
  check.setWarnings(warnings);
  return check;
}

}  // namespace kelvarin
