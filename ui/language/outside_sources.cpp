#include "ui/language/outside_sources.h"

#include <algorithm>

#include "expression/evaluator/constants.h"
#include "expression/functions/called_functions.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

QSet<QString> namesIn(const QString& expression) {
  const ExpressionTokens tokens(expression);
  QSet<QString> names;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (isFreeName(tokens.all(), i)) {
      names.insert(tokens.textAt(i).toString());
    }
  }
  return names;
}

QSet<QString> variableNamesOf(const Formula& formula) {
  QSet<QString> names;
  for (const InputVariable& variable : formula.variables) {
    names.insert(formula.parameters.expandString2(variable.name()));
  }
  if (formula.options.addN) {
    names.insert(rowNumberName());
  }
  return names;
}

OutsideSources::OutsideSources(const QString& expression, const QSet<QString>& variables)
    : m_isRandom(callOf(Source::randomNumbers, expression).has_value()) {
  const QSet<QString> names = namesIn(expression);
  m_differsByRun = std::any_of(names.begin(), names.end(), [&](const QString& name) {
    return differsByRun(name) && !variables.contains(name);
  });
  if (const auto call = callOf(Source::files, expression)) {
    m_fileFunction =
        expression.sliced(static_cast<qsizetype>(call->start), static_cast<qsizetype>(call->size));
  }
}

}  // namespace kelvarin
