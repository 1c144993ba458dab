#include "actions/frame/renamed_variables.h"

#include <algorithm>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

bool isVariable(const std::vector<InputVariable>& variables, const QString& name) {
  return std::ranges::any_of(
      variables, [&name](const InputVariable& variable) { return variable.name() == name; });
}

RenamedVariables renamedVariables(std::vector<InputVariable> variables, const QString& oldName,
                                  const QString& newName) {
  const bool canBeCalledSo = isVariableName(newName) && !isVariable(variables, newName);
  RenamedVariables renamed;
  for (InputVariable& variable : variables) {
    const bool isCalledLikeColumn = !variable.columns.isEmpty() &&
                                    variable.columns.last() == oldName &&
                                    variable.name() == oldName;
    std::ranges::replace(variable.columns, oldName, newName);
    if (!isCalledLikeColumn) {
      continue;
    }
    variable.label = canBeCalledSo ? newName : oldName;
    renamed.mustExpressionsFollow = canBeCalledSo;
  }
  renamed.variables = std::move(variables);
  return renamed;
}

QString withRenamedVariable(const QString& expression, const QString& oldName,
                            const QString& newName) {
  const ExpressionTokens tokens(expression);
  QString renamed = expression;
  for (std::size_t i = tokens.size(); i-- > 0;) {
    if (tokens.textAt(i) == oldName && isFreeName(tokens.all(), i) && !isCall(tokens.all(), i)) {
      renamed.replace(positionOf(tokens[i]), sizeOf(tokens[i]), newName);
    }
  }
  return renamed;
}

}  // namespace kelvarin
