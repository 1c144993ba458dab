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

void setFault(ExpressionCheck& check, Kind kind, const ExpressionError& error) {
  check.kind = kind;
  check.text = checkErrorText(error);
  check.error = error;
}

// About the expression as a whole.
void setFault(ExpressionCheck& check, Kind kind, ExpressionError::Kind what, const char* text) {
  check.kind = kind;
  check.text = QString::fromUtf8(text);
  check.error = {};
  check.error.message = check.text;
  check.error.kind = what;
}

void judgeType(ExpressionCheck& check, const EvaluatedValue& value, MetaTypeColumn meta) {
  if (isNumberMeta(meta) != value.isText()) {
    return;
  }
  if (value.isText()) {
    setFault(check, Kind::error, ExpressionError::Kind::textForNumber, messages::kStringForNumber);
  } else {
    setFault(check, Kind::warning, ExpressionError::Kind::numberForText,
             messages::kNumberForString);
  }
}

}  // namespace

void ExpressionSet::setSamples() {
  for (std::size_t i = 0; i < m_inputs.size(); ++i) {
    const InputVariable& input = m_inputs[i];
    if (kindOf(input) == VariableKind::text) {
      setText(static_cast<int>(i), input.text);
    } else {
      setNumber(static_cast<int>(i), input.isNumber
                                         ? input.number
                                         : m_functions.dates.toElapsedTime(input.text));
    }
  }
}

ExpressionCheck ExpressionSet::check(const OutputVariable& output, ResultUse use) {
  ExpressionCheck check;
  const DateStatus dates = prepareDateContext({output.expression});
  if (dates == DateStatus::dateFormatUnknown) {
    setFault(check, Kind::error, ExpressionError::Kind::dateFormatUnknown,
             messages::kFormatUnknown);
    return check;
  }
  setSamples();
  const MadeOutput made = makeOutput(output, use);
  if (!made) {
    setFault(check, Kind::error, made.error());
    return check;
  }
  check.engine = (*made)->engine;
  m_stringBackend->load(m_variables);
  CompiledExpression& expression = *(*made)->expression;
  EvaluatedValue value;
  if (!expression.evaluate(value)) {
    setFault(check, Kind::error, withPosition(expression.error(), output.expression));
    return check;
  }
  check.value = valueOf(value);
  if (dates == DateStatus::referenceTimeUnparsable) {
    setFault(check, Kind::warning, ExpressionError::Kind::referenceTimeUnparsable,
             messages::kReferenceUnparsable);
  }
  if (use == ResultUse::column) {
    judgeType(check, value, output.meta);
  }
  check.warnings = warningsOfCheck(output.name, expression.textArguments());
  if (use == ResultUse::truth && value.isText()) {
    check.warnings += warningAboutTextCondition(output.name);
  }
  if (check.kind == Kind::fine && !check.warnings.isEmpty()) {
    check.kind = Kind::warning;
  }
  return check;
}

}  // namespace kelvarin
