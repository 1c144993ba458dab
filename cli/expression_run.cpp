#include "cli/expression_run.h"

#include <QDir>

#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/messages.h"
#include "host/contract/column_bytes.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

ExpressionRun::ExpressionRun(const ExpressionRequest& request) : m_request(request) {
  m_parameters.setWorkingDir(QDir::currentPath());
  m_output.name = QStringLiteral("result");
  m_output.expression = request.expression;
  m_output.meta = request.meta.value_or(MetaTypeColumn::number);
}

Status<ExpressionCheck> ExpressionRun::start() {
  m_evaluator.expressions.configure(m_request.options, m_request.variables, &m_parameters, false);
  if (m_request.backend) {
    m_evaluator.expressions.requireBackend(*m_request.backend);
  }
  const DateStatus dates = m_evaluator.expressions.prepareDateContext({m_request.expression});
  if (dates == DateStatus::dateFormatUnknown) {
    return Failure{ExpressionCheck::unknownDateFormat()};
  }
  if (dates == DateStatus::referenceTimeUnparsable) {
    m_warnings.append(messages::referenceUnparsable());
    m_advice = m_evaluator.expressions.referenceTimeAdvice();
  }
  if (const QString advice = m_evaluator.expressions.dateFormatAdvice(); !advice.isEmpty()) {
    m_warnings.append(advice);
  }
  const ResultUse use = m_request.meta ? ResultUse::column : ResultUse::anyValue;
  if (const auto compiled = m_evaluator.expressions.compile(m_output, use); !compiled) {
    return Failure{ExpressionCheck::failure(compiled.error())};
  }
  m_evaluator.start();
  if (m_request.meta && metaOfOutput(*m_request.meta).type() == MetaTypeColumn::text) {
    m_evaluator.rows.setTextTarget(0, &m_text);
  }
  return Done{};
}

Result<ExpressionResult, ExpressionCheck> ExpressionRun::next() {
  setVariables();
  m_evaluator.rows.startRow();
  if (m_evaluator.rows.evaluate(0) == RowOutcome::stop) {
    return Failure{checkOfRow()};
  }
  ExpressionResult result = currentResult();
  m_evaluator.rows.advanceRow();
  return result;
}

QStringList ExpressionRun::warnings() const {
  QStringList warnings = m_warnings + m_evaluator.rows.closingWarnings();
  const FailureCount& failures = m_evaluator.rows.failures();
  if (failures.count > 0) {
    warnings += messages::failedEvaluations(failures.count, failures.firstName, failures.firstRow,
                                            failures.firstMessage);
  }
  return warnings;
}

void ExpressionRun::setVariables() {
  for (std::size_t i = 0; i < m_request.variables.size(); ++i) {
    const InputVariable& variable = m_request.variables[i];
    const int index = static_cast<int>(i);
    if (kindOf(variable) == VariableKind::text) {
      m_evaluator.expressions.setText(index, variable.text);
    } else {
      m_evaluator.expressions.setNumber(index, variable.number);
    }
  }
}

ExpressionResult ExpressionRun::currentResult() {
  if (m_request.meta) {
    return resultOfMeta();
  }
  const ExpressionValue& value = m_evaluator.rows.value(0);
  if (value.type == ExpressionValue::Type::text) {
    return {MetaTypeColumn::text, value.text.isNull(), 0.0, value.text};
  }
  return {MetaTypeColumn::number, isNullNumber(value.number), value.number, {}};
}

ExpressionResult ExpressionRun::resultOfMeta() {
  switch (metaOfOutput(*m_request.meta).type()) {
    case MetaTypeColumn::number: {
      const double number = numberFromBytes(m_evaluator.rows.resultCell(0));
      return {MetaTypeColumn::number, isNullNumber(number), number, {}};
    }
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(m_evaluator.rows.resultCell(0));
      return {MetaTypeColumn::key, isNullKey(key), static_cast<double>(key), {}};
    }
    default:
      return {MetaTypeColumn::text, isNullText(m_text), 0.0, qStringFromBytes(m_text)};
  }
}

ExpressionCheck ExpressionRun::checkOfRow() const {
  const RowFailure& failure = m_evaluator.rows.lastFailure();
  if (failure.kind == RowFailure::Kind::keyCast) {
    const auto row = static_cast<std::int64_t>(m_evaluator.rows.rowNumber());
    return ExpressionCheck::failure(keyOutOfRangeText(failure.name, row, failure.value));
  }
  return ExpressionCheck::failure(failure.error);
}

}  // namespace kelvarin
