#include "cli/expression_run.h"

#include <QDir>

#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"
#include "host/contract/column_bytes.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

ExpressionRun::ExpressionRun(const ExpressionRequest& request) : m_request(request) {
  m_parameters.setWorkingDir(QDir::currentPath());
  m_output.name = QStringLiteral("result");
  m_output.expression = request.expression;
  m_output.meta = request.meta.value_or(MetaTypeColumn::number);
}

Status<ExpressionFault> ExpressionRun::start() {
  m_evaluator.configure(m_request.options, m_request.variables, &m_parameters, false);
  if (m_request.backend) {
    m_evaluator.requireBackend(*m_request.backend);
  }
  const DateStatus dates = m_evaluator.prepareDateContext({m_request.expression});
  if (dates == DateStatus::dateFormatUnknown) {
    return Failure{ExpressionFault{QString::fromLatin1(messages::kFormatUnknown), {}, -1}};
  }
  if (dates == DateStatus::referenceTimeUnparsable) {
    m_warnings.append(QString::fromLatin1(messages::kReferenceUnparsable));
    m_advice = m_evaluator.referenceTimeAdvice();
  }
  if (const QString advice = m_evaluator.dateFormatAdvice(); !advice.isEmpty()) {
    m_warnings.append(advice);
  }
  const ResultUse use = m_request.meta ? ResultUse::column : ResultUse::anyValue;
  if (const auto compiled = m_evaluator.compile(m_output, use); !compiled) {
    const ExpressionError& error = compiled.error();
    return Failure{ExpressionFault{checkErrorText(error), error.token, error.position, error}};
  }
  if (m_request.meta && metaOfOutput(*m_request.meta).type() == MetaTypeColumn::text) {
    m_evaluator.setTextTarget(0, &m_text);
  }
  return Done{};
}

Result<ExpressionResult, ExpressionFault> ExpressionRun::next() {
  setVariables();
  m_evaluator.startRow();
  if (m_evaluator.evaluate(0) == RowOutcome::stop) {
    return Failure{faultOfRow()};
  }
  ExpressionResult result = currentResult();
  m_evaluator.advanceRow();
  return result;
}

QStringList ExpressionRun::warnings() const { return m_warnings + m_evaluator.closingWarnings(); }

void ExpressionRun::setVariables() {
  for (std::size_t i = 0; i < m_request.variables.size(); ++i) {
    const InputVariable& variable = m_request.variables[i];
    const int index = static_cast<int>(i);
    if (kindOf(variable) == VariableKind::text) {
      m_evaluator.setText(index, variable.text);
    } else {
      m_evaluator.setNumber(index, variable.number);
    }
  }
}

ExpressionResult ExpressionRun::currentResult() {
  if (m_request.meta) {
    return resultOfMeta();
  }
  const ExpressionValue& value = m_evaluator.value(0);
  if (value.type == ExpressionValue::Type::text) {
    return {MetaTypeColumn::text, value.text.isNull(), 0.0, value.text};
  }
  return {MetaTypeColumn::number, isNullNumber(value.number), value.number, {}};
}

ExpressionResult ExpressionRun::resultOfMeta() {
  switch (metaOfOutput(*m_request.meta).type()) {
    case MetaTypeColumn::number: {
      const double number = numberFromBytes(m_evaluator.resultCell(0));
      return {MetaTypeColumn::number, isNullNumber(number), number, {}};
    }
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(m_evaluator.resultCell(0));
      return {MetaTypeColumn::key, isNullKey(key), static_cast<double>(key), {}};
    }
    default:
      return {MetaTypeColumn::text, isNullText(m_text), 0.0, qStringFromBytes(m_text)};
  }
}

ExpressionFault ExpressionRun::faultOfRow() const {
  const RowFailure& failure = m_evaluator.lastFailure();
  if (failure.kind == RowFailure::Kind::keyCast) {
    const auto row = static_cast<std::int64_t>(m_evaluator.rowNumber());
    return {keyOutOfRangeText(failure.name, row, failure.value), {}, -1};
  }
  return {checkErrorText(failure.error), failure.error.token, failure.error.position, failure.error};
}

}  // namespace kelvarin
