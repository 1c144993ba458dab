#include "ui/debugger/breakpoint_condition.h"

#include "expression/backends/expression_text.h"
#include "expression/errors/error_texts.h"

namespace kelvarin {

BreakpointCondition::BreakpointCondition(QString expression, int element,
                                         const ConditionSettings& settings)
    : m_expression(std::move(expression)), m_element(element), m_settings(settings) {}

void BreakpointCondition::addSource(const Source& source, const QString& name, bool isText) {
  InputVariable variable;
  variable.label = name;
  variable.isNumber = !isText;
  m_variables.push_back(std::move(variable));
  m_sources.push_back(source);
}

Status<QString> BreakpointCondition::compile(const ObservedRow& row) {
  QSet<QString> unknown = valueNames(m_expression);
  for (std::size_t i = 0; i < row.variables.size(); ++i) {
    const ShownVariable& variable = row.names->variables[i];
    const bool isSeen = variable.element < 0 || variable.element == m_element;
    if (isSeen && !variable.column.isEmpty() && unknown.remove(variable.name)) {
      addSource({false, i}, variable.name, variable.isText);
    }
  }
  for (std::size_t i = 0; i < row.results.size(); ++i) {
    const QString& name = row.names->results[static_cast<qsizetype>(i)];
    if (unknown.remove(name)) {
      addSource({true, i}, name, row.results[i].type == ExpressionValue::Type::text);
    }
  }
  OutputVariable output;
  output.expression = m_expression;
  ExpressionSet& expressions = m_evaluator.expressions;
  expressions.configure(m_settings.options, m_variables, &m_settings.parameters, false);
  (void)expressions.prepareDateContext({m_expression});
  if (const auto compiled = expressions.compile(output, ResultUse::truth); !compiled) {
    return Failure{errorTextWithPosition(compiled.error())};
  }
  m_evaluator.start();
  return Done{};
}

// A row that failed has no results.
const ExpressionValue* BreakpointCondition::valueAt(const Source& source, const ObservedRow& row) {
  const std::vector<ExpressionValue>& values = source.isResult ? row.results : row.variables;
  return source.index < values.size() ? &values[source.index] : nullptr;
}

Result<bool, QString> BreakpointCondition::holdsAt(const ObservedRow& row) {
  if (!m_isCompiled) {
    m_isCompiled = true;
    if (const auto compiled = compile(row); !compiled) {
      m_fault = compiled.error();
    }
  }
  if (!m_fault.isEmpty()) {
    return Failure{m_fault};
  }
  const auto known = static_cast<long long>(m_evaluator.rows.rowNumber());
  if (row.number > known) {
    m_evaluator.rows.advanceRows(static_cast<std::size_t>(row.number - known));
  }
  for (std::size_t i = 0; i < m_sources.size(); ++i) {
    const ExpressionValue* value = valueAt(m_sources[i], row);
    if (m_variables[i].isNumber) {
      m_evaluator.expressions.setNumber(static_cast<int>(i),
                                        value == nullptr ? kNullNumber : value->number);
    } else {
      m_evaluator.expressions.setText(static_cast<int>(i),
                                      value == nullptr ? QString() : value->text);
    }
  }
  m_evaluator.rows.startRow();
  bool holds = false;
  if (m_evaluator.rows.evaluateTruth(0, holds) != RowOutcome::ok) {
    return Failure{errorTextWithPosition(m_evaluator.rows.lastFailure().error)};
  }
  return holds;
}

}  // namespace kelvarin
