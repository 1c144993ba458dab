#include "ui/debugger/row_values.h"

#include <algorithm>

namespace kelvarin {

namespace {

// The element of each vector stands for the vector; those that have fewer are missing.
std::vector<VariableValue> variablesOfElement(const ObservedRow& row, int element) {
  std::vector<VariableValue> values;
  values.reserve(row.variables.size());
  for (std::size_t i = 0; i < row.variables.size(); ++i) {
    const ShownVariable& variable = row.names->variables[i];
    if (variable.element < 0 || variable.element == element) {
      values.push_back({variable.name, -1, variable.column, row.variables[i]});
    }
  }
  return values;
}

// A run goes on after some failures, with a missing value for the result.
ResultFault faultOf(const ObservedRow& row, std::size_t result, int output) {
  const bool hasValue = result < row.results.size();
  const bool isOfElement = row.names->results.size() > row.names->outputCount;
  for (const ObservedFailure& failure : row.failures) {
    const bool isOfResult =
        !isOfElement || failure.name == row.names->results[static_cast<qsizetype>(result)];
    if (failure.output == output && isOfResult) {
      return {failure.text, hasValue};
    }
  }
  return {hasValue || row.failures.empty() ? QString() : row.failures.back().text, hasValue};
}

}  // namespace

RowValues valuesToShow(const ObservedRow& row, int element) {
  RowValues values;
  values.variables = variablesOfElement(row, element);
  const int outputs = row.names->outputCount;
  const auto first = static_cast<std::size_t>(std::max(0, element) * outputs);
  for (int output = 0; output < outputs; ++output) {
    const std::size_t result = first + static_cast<std::size_t>(output);
    if (result >= static_cast<std::size_t>(row.names->results.size())) {
      break;
    }
    VariableValue shown;
    shown.name = row.names->results[static_cast<qsizetype>(result)];
    if (result < row.results.size()) {
      shown.value = row.results[result];
    }
    values.results.push_back(std::move(shown));
    values.faults.push_back(faultOf(row, result, output));
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
