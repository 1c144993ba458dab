#include "expression/help/missing_operator.h"

#include <QRegularExpression>

namespace kelvarin {

namespace {

constexpr char kOperatorMissing[] =
    "An operator is missing between %1 and %2: write, for instance, %3.";
constexpr char kExample[] = "%1 %2 %3";

QRegularExpression unicodePattern(const char* pattern) {
  return QRegularExpression(QString::fromLatin1(pattern),
                            QRegularExpression::UseUnicodePropertiesOption);
}

bool startsWithDigit(const QString& value) {
  return !value.isEmpty() && value.front().isDigit();
}

bool isText(const QString& value) {
  return value.startsWith(u'"') || value.endsWith(u'"');
}

// Libraries report the second value; a bracket behind a variable is reported at the variable.
qsizetype beginOfSecondValue(const ExpressionError& error, const QString& expression,
                             const QStringList& variables) {
  static const QRegularExpression undefined(
      QStringLiteral("^Undefined token \"(.+)\" found at position (\\d+)"));
  static const QRegularExpression unexpected(
      QStringLiteral("^Unexpected (?:value|variable|function|parenthesis) \"(?!\\)).*\" found at "
                     "position (\\d+)"));
  const auto second = unexpected.match(error.message);
  if (second.hasMatch()) {
    return second.captured(1).toLongLong();
  }
  const auto found = undefined.match(error.message);
  if (!found.hasMatch()) {
    return error.message.contains(QLatin1String("does not fit here")) ? error.position : -1;
  }
  const qsizetype begin = found.captured(2).toLongLong();
  const bool isBehindDigit = begin > 0 && begin < expression.size() &&
                             expression[begin - 1].isDigit() && expression[begin].isLetter();
  if (isBehindDigit) {
    return begin;
  }
  const QString token = found.captured(1);
  return variables.contains(token) ? expression.indexOf(u'(', begin + token.size()) : -1;
}

}  // namespace

QString missingOperatorHint(const ExpressionError& error, const QString& expression,
                            const QStringList& variables) {
  qsizetype begin = beginOfSecondValue(error, expression, variables);
  while (begin > 0 && begin < expression.size() && expression[begin].isSpace()) {
    ++begin;
  }
  if (begin <= 0 || begin >= expression.size()) {
    return {};
  }
  static const QRegularExpression valueAtEnd =
      unicodePattern(R"(([\w.]+|\)|"(?:[^"\\]|\\.)*")\s*$)");
  static const QRegularExpression valueAtBegin =
      unicodePattern(R"(^([\w.]+|\(|"(?:[^"\\]|\\.)*"))");
  const QString left = valueAtEnd.match(expression.left(begin)).captured(1);
  const QString right = valueAtBegin.match(expression.mid(begin)).captured(1);
  if (left.isEmpty() || right.isEmpty()) {
    return {};
  }
  const bool isLeftName = left != u")" && !startsWithDigit(left) && !isText(left);
  if (right == u"(" && isLeftName && !variables.contains(left)) {
    return {};  // a function's arguments
  }
  const QString sign = isText(left) || isText(right) ? QStringLiteral("//") : QStringLiteral("*");
  const QString shownLeft = left == u")" ? QStringLiteral("(...)") : left;
  const bool isCall = error.message.startsWith(QLatin1String("Unexpected function"));
  const QString shownRight = right == u"(" ? QStringLiteral("(...)")
                             : isCall      ? right + QStringLiteral("(...)")
                                           : right;
  const QString example = QString::fromLatin1(kExample).arg(shownLeft, sign, shownRight);
  return QString::fromLatin1(kOperatorMissing).arg(shownLeft, shownRight, example);
}

}  // namespace kelvarin
