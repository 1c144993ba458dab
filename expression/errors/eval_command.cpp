#include "expression/errors/eval_command.h"

#include <algorithm>

namespace kelvarin {

namespace {

constexpr qsizetype kLongestValue = 40;
constexpr qsizetype kLongestCommand = 2000;

bool isControl(QChar c) {
  return c.category() == QChar::Other_Control;
}

QString escapedControl(QChar c) {
  return c == u'\n' ? QStringLiteral("\\n")
                    : QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QChar(u'0'));
}

QString shownText(const QString& value) {
  const bool isCut = value.size() > kLongestValue;
  QString shown;
  for (const QChar c : value.first(isCut ? kLongestValue : value.size())) {
    shown += isControl(c) ? escapedControl(c) : QString(c);
  }
  return u'"' + shown + (isCut ? QStringLiteral("\"...") : QStringLiteral("\""));
}

// Of a control character beyond Latin-1's there is no form that all shells read, and none exists.
QString quotedWithEscapes(const QString& text) {
  QString quoted = QStringLiteral("$'");
  for (const QChar c : text) {
    if (c.unicode() >= 0x80 && isControl(c)) {
      quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QChar(u'0'));
    } else if (isControl(c)) {
      quoted += escapedControl(c);
    } else if (c == u'\'' || c == u'\\') {
      quoted += u'\\';
      quoted += c;
    } else {
      quoted += c;
    }
  }
  return quoted + u'\'';
}

QString quoted(const QString& text) {
  if (std::any_of(text.begin(), text.end(), isControl)) {
    return quotedWithEscapes(text);
  }
  const auto isPlain = [](QChar c) {
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || QStringView(u"_-=.+:,/").contains(c));
  };
  if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain)) {
    return text;
  }
  return u'\'' + QString(text).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

// Line breaks and tabs are blanks in an expression.
QString inOneLine(QString expression) {
  for (QChar& c : expression) {
    c = c == u'\n' || c == u'\r' || c == u'\t' ? QChar(u' ') : c;
  }
  return expression.trimmed();
}

QStringList argumentsOf(const TriedVariable& variable) {
  const QString assignment = variable.name + u'=' + variable.value;
  if (!variable.value.isNull()) {
    return {variable.isText ? QStringLiteral("--text") : QStringLiteral("--var"),
            quoted(assignment)};
  }
  QStringList arguments{QStringLiteral("--null"), quoted(variable.name)};
  return variable.isText ? QStringList{QStringLiteral("--text"), quoted(variable.name)} + arguments
                         : arguments;
}

}  // namespace

QString valuesText(const std::vector<TriedVariable>& variables) {
  QStringList values;
  for (const TriedVariable& variable : variables) {
    const QString value = variable.value.isNull() ? QStringLiteral("null")
                          : variable.isText       ? shownText(variable.value)
                                                  : variable.value;
    values += variable.name + QStringLiteral(" = ") + value;
  }
  return values.join(QStringLiteral(", "));
}

QString evalCommand(const TriedExpression& tried) {
  QStringList words{QStringLiteral("kelvarin"), QStringLiteral("eval")};
  const QString expression = inOneLine(tried.expression);
  const bool looksLikeOption = expression.startsWith(u'-');
  if (!looksLikeOption) {
    words += u'\'' + QString(expression).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
  }
  for (const TriedVariable& variable : tried.variables) {
    words += argumentsOf(variable);
  }
  if (!tried.meta.isEmpty()) {
    words += {QStringLiteral("--meta"), tried.meta};
  }
  for (const QString& option : tried.options) {
    words += {QStringLiteral("--opt"), quoted(option)};
  }
  if (looksLikeOption) {
    words += {QStringLiteral("--"), quoted(expression)};
  }
  const QString command = words.join(u' ');
  return command.size() <= kLongestCommand ? command : QString();
}

}  // namespace kelvarin
