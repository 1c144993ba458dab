// The variables of a row as a step debugger shows them.
#include <algorithm>

#include "expression/evaluator/row_evaluation.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

ExpressionValue valueOfConstant(const NamedConstant& constant) {
  if (!constant.isText) {
    return ExpressionValue::ofNumber(constant.number);
  }
  return {ExpressionValue::Type::text, kNullNumber, constant.text};
}

}  // namespace

// Debuggers pass by many rows, so the usual routes do without the memories of the others.
ExpressionValue RowBinding::valueOf(Route route, const unsigned char* bytes,
                                    const DateContext& dates, int nullKeyMode) {
  if (route == Route::numberToNumber) {
    return ExpressionValue::ofNumber(numberFromBytes(bytes));
  }
  if (route == Route::textToText) {
    return isNullText(bytes) ? ExpressionValue::nullText()
                             : ExpressionValue::ofText(textFromBytes(bytes));
  }
  return convertedValueOf(route, bytes, dates, nullKeyMode);
}

// As loadEntry() loads it, into a store and with memories that nobody keeps.
ExpressionValue RowBinding::convertedValueOf(Route route, const unsigned char* bytes,
                                             const DateContext& dates, int nullKeyMode) {
  VariableStore store;
  store.addText();
  Entry entry;
  entry.route = route;
  entry.texts.emplace_back(QString());
  entry.printed = std::make_unique<ShortestNumber>();
  loadEntry(entry, bytes, 0, store, dates, nullKeyMode);
  if (!yieldsText(route)) {
    return ExpressionValue::ofNumber(store.numbers()[0]);
  }
  const TextCell& cell = store.text(0);
  return cell.isNull ? ExpressionValue::nullText() : ExpressionValue::ofText(cell.bytes);
}

std::vector<ShownVariable> RowBinding::shownVariables(const OneRow& columns) const {
  std::vector<ShownVariable> variables;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Entry& entry = m_entries[i];
    for (int element = 0; element < elementsOf(entry); ++element) {
      variables.push_back({entry.variable, entry.isVector ? element : -1,
                           columns.colName(columnOf(i, element)), yieldsText(entry.route)});
    }
  }
  return variables;
}

void RowBinding::appendValues(const OneRow& row, const DateContext& dates, int nullKeyMode,
                              std::vector<ExpressionValue>& values) const {
  unsigned char* const* bytes = row.getAllColForRead();
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Entry& entry = m_entries[i];
    for (int element = 0; element < elementsOf(entry); ++element) {
      values.push_back(valueOf(entry.route, bytes[columnOf(i, element)], dates, nullKeyMode));
    }
  }
}

std::vector<ShownVariable> RowEvaluation::shownVariables(const OneRow& columns) const {
  std::vector<ShownVariable> variables = m_expressions.binding().shownVariables(columns);
  if (m_expressions.options().addN) {
    variables.push_back({QStringLiteral("_n"), -1, {}, false});
  }
  for (const NamedConstant& constant : m_expressions.constants()) {
    if (isCurrentTime(constant)) {
      variables.push_back({constant.name, -1, {}, constant.isText});
    }
  }
  return variables;
}

void RowEvaluation::showValues(const OneRow& row, const std::vector<ShownVariable>& variables,
                               std::vector<ExpressionValue>& values) const {
  const EvaluationOptions& options = m_expressions.options();
  values.clear();
  m_expressions.binding().appendValues(row, m_expressions.dates(), options.keyCast.nullOnInput,
                                       values);
  if (options.addN) {
    values.push_back(ExpressionValue::ofNumber(m_variables.numbers()[0]));
  }
  for (const NamedConstant& constant : m_expressions.constants()) {
    if (isCurrentTime(constant)) {
      values.push_back(valueOfConstant(constant));
    }
  }
  takeAssignedValues(variables, values);
}

// Expressions behind one that stopped the run at this row still have the values of the row before.
int RowEvaluation::outputsEvaluated() const {
  const bool isOfThisRow = m_lastFailure.row == m_variables.numbers()[0];
  const bool goesOn =
      m_lastFailure.kind == RowFailure::Kind::evaluation && !m_expressions.options().abortWhenError;
  return isOfThisRow && !goesOn ? m_lastFailure.output + 1 : m_expressions.outputCount();
}

// Of two variables with one name, expressions see the first. Of a vector they saw the current
// element last.
void RowEvaluation::takeAssignedValues(const std::vector<ShownVariable>& variables,
                                       std::vector<ExpressionValue>& values) const {
  for (int i = 0; i < outputsEvaluated(); ++i) {
    for (const AssignedValue& assigned : m_expressions.output(i).expression->assignedValues()) {
      const auto found =
          std::find_if(variables.begin(), variables.end(), [&](const ShownVariable& variable) {
            return variable.name == assigned.name &&
                   (variable.element < 0 || variable.element == m_element);
          });
      if (found != variables.end()) {
        values[static_cast<std::size_t>(found - variables.begin())] = valueOf(assigned.value);
      }
    }
  }
}

}  // namespace kelvarin
