#include "ui/debugger/row_values.h"

#include <algorithm>

namespace kelvarin {

std::vector<VariableValue> variableValues(const ObservedRow& row) {
  std::vector<VariableValue> values;
  values.reserve(row.variables.size());
  for (std::size_t i = 0; i < row.variables.size(); ++i) {
    const ShownVariable& variable = row.names->variables[i];
    values.push_back({variable.name, variable.element, variable.column, row.variables[i]});
  }
  return values;
}

std::vector<VariableValue> valuesOfElement(const ObservedRow& row, int element) {
  std::vector<VariableValue> values;
  for (VariableValue& value : variableValues(row)) {
    if (value.element < 0 || value.element == element) {
      value.element = -1;
      values.push_back(std::move(value));
    }
  }
  return values;
}

int elementCount(const ObservedRow& row) {
  int count = 0;
  for (std::size_t i = 0; i < row.variables.size(); ++i) {
    count = std::max(count, row.names->variables[i].element + 1);
  }
  return count;
}

bool isSameValue(const ExpressionValue& a, const ExpressionValue& b) {
  if (a.type != b.type) {
    return false;
  }
  return a.type == ExpressionValue::Type::text
             ? a.text == b.text && a.text.isNull() == b.text.isNull()
             : hasSameBits(a.number, b.number);
}

}  // namespace kelvarin
