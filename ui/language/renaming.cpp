#include "ui/language/renaming.h"

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

QString withRenamedVariable(const QString& expression, const QString& from, const QString& to) {
  const ExpressionTokens tokens(expression);
  QString renamed = expression;
  for (std::size_t i = tokens.size(); i-- > 0;) {
    if (tokens.textAt(i) == from && isFreeName(tokens.all(), i) && !isCall(tokens.all(), i)) {
      renamed.replace(positionOf(tokens[i]), sizeOf(tokens[i]), to);
    }
  }
  return renamed;
}

}  // namespace kelvarin
