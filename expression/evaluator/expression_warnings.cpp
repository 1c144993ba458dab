#include "expression/evaluator/expression_warnings.h"

#include "expression/backends/equals_signs.h"
#include "expression/backends/expression_text.h"
#include "expression/evaluator/chained_comparison.h"
#include "expression/evaluator/messages.h"

namespace kelvarin {

namespace {

// The name that ends before `end`, or starts at `start`; empty where something else stands.
QString nameBefore(const QString& text, qsizetype end) {
  const QString left = text.first(end).trimmed();
  qsizetype start = left.size();
  while (start > 0 && isNameCharacter(left[start - 1])) {
    --start;
  }
  return left.sliced(start);
}

QString nameBehind(const QString& text, qsizetype start) {
  const QString right = text.sliced(start).trimmed();
  qsizetype end = 0;
  while (end < right.size() && isNameCharacter(right[end])) {
    ++end;
  }
  const bool isFunction = right.sliced(end).trimmed().startsWith(u'(');
  return isFunction ? QString() : right.first(end);
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
             : QString::fromUtf8(messages::kChained)
                   .arg(expressionName, parts.join(u' '), comparisons.front(),
                        comparisons.join(QLatin1String(" && ")));
}

}  // namespace

QStringList warningsAbout(const QString& expressionName, const QString& expression,
                          ExpressionPurpose purpose) {
  const QString missing = QStringLiteral("_null");
  QString assignment;
  QString comparison;
  for (const EqualsSign& sign : equalsSigns(expression)) {
    if (sign.text == u"=") {
      assignment = QString::fromUtf8(messages::kAssigns).arg(expressionName);
      if (purpose == ExpressionPurpose::condition) {
        assignment += QString::fromUtf8(messages::kAssignedIsCondition);
      }
    }
    const bool isEqual = sign.text == u"==";
    if (!isEqual && sign.text != u"!=") {
      continue;
    }
    const QString left = nameBefore(expression, sign.start);
    const QString right = nameBehind(expression, sign.start + sign.text.size());
    if (left == missing || right == missing) {
      const QString other = left == missing ? right : left;
      comparison = QString::fromUtf8(isEqual ? messages::kEqualsNull : messages::kDiffersFromNull)
                       .arg(expressionName, isVariableName(other) ? other : QStringLiteral("x"));
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
  return {QString::fromUtf8(messages::kTextArgument)
              .arg(expressionName, found.function, QString::number(found.argument),
                   QString::number(found.position))};
}

QString warningAboutTextCondition(const QString& expressionName) {
  return QString::fromUtf8(messages::kTextCondition).arg(expressionName);
}

QStringList warningsOfRun(const QString& expressionName, const TextArguments& found) {
  if (found.count == 0) {
    return {};
  }
  return {QString::fromUtf8(messages::kTextArgumentsOfRun)
              .arg(expressionName, found.function, QString::number(found.argument),
                   QString::number(found.position), QString::number(found.count),
                   QString::number(found.row, 'f', 0))};
}

}  // namespace kelvarin
