// The variables of a row as a step debugger shows them.
#include <algorithm>

#include "expression/evaluator/row_evaluation.h"

namespace kelvarin {

namespace {

VariableValue rowNumberOf(const VariableStore& variables) {
  VariableValue number;
  number.name = QStringLiteral("_n");
  number.value = ExpressionValue::ofNumber(variables.numbers()[0]);
  return number;
}

VariableValue valueOfConstant(const NamedConstant& constant) {
  VariableValue shown;
  shown.name = constant.name;
  shown.value.type = constant.isText ? ExpressionValue::Type::text : ExpressionValue::Type::number;
  shown.value.number = constant.isText ? kNullNumber : constant.number;
  shown.value.text = constant.text;
  return shown;
}

}  // namespace

// As loadEntry() loads it, into a store and with memories that nobody keeps.
ExpressionValue RowBinding::valueOf(Route route, const unsigned char* bytes,
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

std::vector<VariableValue> RowBinding::valuesOf(const OneRow& row, const DateContext& dates,
                                                int nullKeyMode) const {
  unsigned char* const* bytes = row.getAllColForRead();
  const int elements = elementCount();
  std::vector<VariableValue> values;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Entry& entry = m_entries[i];
    for (int element = 0; element < (entry.isVector ? elements : 1); ++element) {
      const int column = m_columns[static_cast<std::size_t>(element) * m_entries.size() + i];
      values.push_back({entry.variable, entry.isVector ? element : -1, row.colName(column),
                        valueOf(entry.route, bytes[column], dates, nullKeyMode)});
    }
  }
  return values;
}

std::vector<VariableValue> RowEvaluation::variablesOf(const OneRow& row) const {
  const EvaluationOptions& options = m_expressions.options();
  std::vector<VariableValue> variables =
      m_expressions.binding().valuesOf(row, m_expressions.dates(), options.keyCast.nullOnInput);
  if (options.addN) {
    variables.push_back(rowNumberOf(m_variables));
  }
  takeAssignedValues(variables);
  for (const NamedConstant& constant : m_expressions.constants()) {
    if (isCurrentTime(constant)) {
      variables.push_back(valueOfConstant(constant));
    }
  }
  return variables;
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
void RowEvaluation::takeAssignedValues(std::vector<VariableValue>& variables) const {
  for (int i = 0; i < outputsEvaluated(); ++i) {
    for (const AssignedValue& assigned : m_expressions.output(i).expression->assignedValues()) {
      const auto found =
          std::find_if(variables.begin(), variables.end(), [&](const VariableValue& variable) {
            return variable.name == assigned.name &&
                   (variable.element < 0 || variable.element == m_element);
          });
      if (found != variables.end()) {
        found->value = valueOf(assigned.value);
      }
    }
  }
}

}  // namespace kelvarin
