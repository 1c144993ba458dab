#include "expression/evaluator/row_evaluation.h"

#include <new>

#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/expression_warnings.h"

namespace kelvarin {

void RowEvaluation::clear() {
  m_directCalls.clear();
  m_slots.clear();
  m_hasStringOutput = false;
  m_writer.startRow();
  m_listener = nullptr;
  m_row = nullptr;
  m_element = 0;
  m_elementNames.clear();
  m_lastFailure = {};
  m_failures = {};
}

void RowEvaluation::start() {
  clear();
  const int count = m_expressions.outputCount();
  m_slots = std::vector<ResultSlot>(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const CompiledOutput& output = m_expressions.output(i);
    m_hasStringOutput |= output.engine.engine == BackendKind::string;
    slot(i).output = &output;
    ResultWriter::writeNull(slot(i));
    m_directCalls.push_back(directCallOf(slot(i)));
  }
}

RowEvaluation::DirectCall RowEvaluation::directCallOf(ResultSlot& slot) {
  const CompiledOutput& output = *slot.output;
  const bool isPlain = output.use == ResultUse::truth ||
                       (output.use == ResultUse::column && output.meta == MetaTypeColumn::number);
  NumberExpression* expression = isPlain ? output.expression->asNumberExpression() : nullptr;
  if (expression == nullptr) {
    return {};
  }
  return {expression->numberCall(), ::new (slot.cell) double(kNullNumber)};
}

RowOutcome RowEvaluation::loadRow(const OneRow& row) {
  m_writer.startRow();
  m_variables.loadRowNumber();
  return loadElement(row, 0);
}

RowOutcome RowEvaluation::loadElement(const OneRow& row, int element) {
  m_row = &row;
  m_element = element;
  RowBinding& binding = m_expressions.binding();
  if (!binding.load(row, element, m_variables, m_expressions.dates(),
                    m_expressions.options().keyCast.nullOnInput)) {
    m_lastFailure = {};
    m_lastFailure.kind = RowFailure::Kind::nullKey;
    m_lastFailure.name = binding.failedVariable();
    m_lastFailure.row = rowNumber();
    return RowOutcome::stop;
  }
  if (m_hasStringOutput) {
    m_expressions.stringBackend().load(m_variables);
  }
  return RowOutcome::ok;
}

void RowEvaluation::startRow() {
  m_writer.startRow();
  m_variables.loadRowNumber();
  if (m_hasStringOutput) {
    m_expressions.stringBackend().load(m_variables);
  }
}

void RowEvaluation::passRow() {
  m_variables.loadRowNumber();
  advanceRow();
}

RowOutcome RowEvaluation::evaluateAnyValue(int output) {
  ResultSlot& target = slot(output);
  EvaluatedValue value;
  if (!target.output->expression->evaluate(value)) [[unlikely]] {
    return failToEvaluate(output);
  }
  switch (m_writer.write(target, value, m_expressions.options().keyCast)) {
    case ResultWriter::Outcome::ok:
      break;
    case ResultWriter::Outcome::textForNumber:
      return fail(output, {.message = messages::stringForNumber(),
                           .kind = ExpressionError::Kind::textForNumber});
    case ResultWriter::Outcome::noKey:
      return failToCast(output, value.number);
  }
  return RowOutcome::ok;
}

RowOutcome RowEvaluation::evaluateTruth(int output, bool& isTrue) {
  const NumberCall& call = m_directCalls[static_cast<std::size_t>(output)].call;
  EvaluatedValue value;
  const bool isEvaluated = call.function != nullptr
                               ? call(&value.number)
                               : slot(output).output->expression->evaluate(value);
  isTrue = isEvaluated && isTrueValue(value);
  if (call.function == nullptr && value.isText()) [[unlikely]] {
    slot(output).wasTextCondition = true;
  }
  return isEvaluated ? RowOutcome::ok : failToEvaluate(output);
}

RowOutcome RowEvaluation::failToEvaluate(int output) {
  ResultWriter::writeNull(slot(output));
  return fail(output, slot(output).output->expression->error());
}

RowOutcome RowEvaluation::fail(int output, const ExpressionError& error) {
  m_lastFailure = failureOf(output, RowFailure::Kind::evaluation);
  m_lastFailure.error = withPosition(error, slot(output).output->text);
  ++slot(output).failureCount;
  if (m_failures.count++ == 0) {
    m_failures.firstName = m_lastFailure.name;
    m_failures.firstMessage = error.message;
    m_failures.firstRow = rowNumber();
  }
  if (m_expressions.options().abortWhenError) {
    return RowOutcome::stop;
  }
  if (m_listener != nullptr && m_row != nullptr) {
    m_listener->evaluationFailed(m_lastFailure, *m_row);
  }
  return RowOutcome::failed;
}

RowOutcome RowEvaluation::failToCast(int output, double number) {
  m_lastFailure = failureOf(output, RowFailure::Kind::keyCast);
  m_lastFailure.value = number;
  return RowOutcome::stop;
}

RowFailure RowEvaluation::failureOf(int output, RowFailure::Kind kind) const {
  RowFailure failure;
  failure.kind = kind;
  failure.name = nameOf(output);
  failure.backend = m_expressions.backend(output);
  failure.output = output;
  failure.row = rowNumber();
  return failure;
}

QString RowEvaluation::nameOf(int output) const {
  const auto index = static_cast<qsizetype>(m_element) * m_expressions.outputCount() + output;
  return m_elementNames.value(index, m_expressions.output(output).name);
}

QStringList RowEvaluation::closingWarnings() const {
  QStringList warnings = m_expressions.binding().warnings(m_expressions.dates());
  for (int i = 0; i < m_expressions.outputCount(); ++i) {
    const CompiledOutput& output = m_expressions.output(i);
    warnings += warningsOfRun(output.name, output.expression->textArguments());
    if (static_cast<std::size_t>(i) < m_slots.size() &&
        m_slots[static_cast<std::size_t>(i)].wasTextCondition) {
      warnings += warningAboutTextCondition(output.name);
    }
  }
  return warnings;
}

}  // namespace kelvarin
