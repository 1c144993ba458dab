#include "library/expressions/dependence.h"

#include <algorithm>

#include "expression/evaluator/constants.h"
#include "expression/functions/function_table.h"
#include "expression/tokens/expression_tokens.h"
#include "include/kelvarin/kelvarin.h"

namespace kelvarin {

namespace {

int reasonOfFunction(const QString& name) {
  const auto& table = functionTable();
  const auto line = std::ranges::find_if(
      table, [&](const FunctionLine& function) { return name == QLatin1String(function.name); });
  if (line == table.end() || line->source == Source::arguments) {
    return 0;
  }
  return line->source == Source::files ? KELVARIN_DEPENDS_ON_FILES : KELVARIN_DEPENDS_ON_RANDOM;
}

int reasonOfName(const QString& name, bool hasRowNumber) {
  if (hasRowNumber && name == QLatin1String("_n")) {
    return KELVARIN_DEPENDS_ON_ROW_NUMBER;
  }
  return differsByRun(name) ? KELVARIN_DEPENDS_ON_TIME : 0;
}

}  // namespace

void Dependence::add(int reason, const QString& from, long long at) {
  if (reasons == 0 && reason != 0) {
    token = from;
    position = at;
  }
  reasons |= reason;
}

Dependence dependenceOf(const QString& expression, bool hasRowNumber) {
  Dependence dependence;
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const QString text = tokens.text(tokens[i]).toString();
    int reason = 0;
    if (isAssignment(tokens[i])) {
      reason = KELVARIN_DEPENDS_ON_EARLIER_ROWS;
    } else if (isCall(tokens.all(), i)) {
      reason = reasonOfFunction(text);
    } else if (isFreeName(tokens.all(), i)) {
      reason = reasonOfName(text, hasRowNumber);
    }
    dependence.add(reason, text, positionOf(tokens[i]));
  }
  return dependence;
}

}  // namespace kelvarin
