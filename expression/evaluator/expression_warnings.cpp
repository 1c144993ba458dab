#include "expression/evaluator/expression_warnings.h"

#include "expression/evaluator/chained_comparison.h"
#include "expression/evaluator/messages.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

// The name at the index; empty where something else stands.
QString nameAt(const ExpressionTokens& tokens, std::size_t index) {
  const bool isValue =
      index != kNoToken && isFreeName(tokens.all(), index) && !isCall(tokens.all(), index);
  return isValue ? tokens.textAt(index).toString() : QString();
}

QString warningAboutAssignment(const QString& expressionName, ExpressionPurpose purpose) {
  return purpose == ExpressionPurpose::condition ? messages::assignsInCondition(expressionName)
                                                 : messages::assigns(expressionName);
}

// Empty where the comparison at the index is with other values than the missing one.
QString warningAboutNull(const QString& expressionName, const ExpressionTokens& tokens,
                         std::size_t index) {
  const QString left = nameAt(tokens, tokenBefore(tokens.all(), index));
  const QString right = nameAt(tokens, tokenAfter(tokens.all(), index));
  if (left != u"_null" && right != u"_null") {
    return {};
  }
  const QString& other = left == u"_null" ? right : left;
  const QString value = other.isEmpty() ? QStringLiteral("x") : other;
  return tokens[index].sign == "==" ? messages::equalsNull(expressionName, value)
                                    : messages::differsFromNull(expressionName, value);
}

// `3 < x < 5` becomes `3 < x && x < 5`.
QString warningAboutChain(const QString& expressionName, const QString& expression) {
  const QStringList parts = chainedComparison(expression);
  QStringList comparisons;
  for (qsizetype i = 0; i + 2 < parts.size(); i += 2) {
    comparisons += parts.sliced(i, 3).join(u' ');
  }
  return comparisons.isEmpty()
             ? QString()
             : messages::chained(expressionName, parts.join(u' '), comparisons.front(),
                                 comparisons.join(QLatin1String(" && ")));
}

}  // namespace

QStringList warningsAbout(const QString& expressionName, const QString& expression,
                          ExpressionPurpose purpose) {
  const ExpressionTokens tokens(expression);
  QString assignment;
  QString comparison;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const std::string_view sign = tokens[i].sign;
    const bool isTail = i > 0 && isComparison(tokens[i - 1]);  // of `===`
    if (sign == "=" && !isTail) {
      assignment = warningAboutAssignment(expressionName, purpose);
    } else if (sign == "==" || sign == "!=") {
      const QString warning = warningAboutNull(expressionName, tokens, i);
      comparison = warning.isEmpty() ? comparison : warning;
    }
  }
  QStringList warnings{assignment, comparison, warningAboutChain(expressionName, expression)};
  warnings.removeAll(QString());
  return warnings;
}

QStringList warningsOfCheck(const QString& expressionName, const TextArguments& found) {
  if (found.count == 0) {
    return {};
  }
  return {messages::textArgument(expressionName, found)};
}

QString warningAboutTextCondition(const QString& expressionName) {
  return messages::textCondition(expressionName);
}

QStringList warningsOfRun(const QString& expressionName, const TextArguments& found) {
  if (found.count == 0) {
    return {};
  }
  return {messages::textArgumentsOfRun(expressionName, found)};
}

}  // namespace kelvarin
