#include "expression/backends/expression_text.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Of private use: the marked letters of ASCII, the only ones that names of functions begin with.
constexpr char16_t kFirstMark = 0xE000;
constexpr char16_t kEndOfMarks = kFirstMark + 0x80;
constexpr char16_t kTargetMark = 0xE0FF;
constexpr std::string_view kTargetMarkBytes = "\xEE\x83\xBF";

// A blank or a comment with blanks in place of line breaks.
void breakNoLine(QString& expression, const Token& token) {
  for (auto i = positionOf(token); i < positionOf(token) + sizeOf(token); ++i) {
    const QChar c = expression.at(i);
    if (c == u'\r' || c == u'\n' || c == u'\t') {
      expression[i] = u' ';
    }
  }
}

// Puts a text of no more characters in place of the token, with blanks up to its size.
void replaceToken(QString& expression, const Token& token, const QString& text) {
  expression.replace(positionOf(token), sizeOf(token), text.leftJustified(sizeOf(token)));
}

}  // namespace

QString withoutLineBreaks(QString expression) {
  for (const Token& token : ExpressionTokens(expression)) {
    if (token.kind == TokenKind::blank || token.kind == TokenKind::comment) {
      breakNoLine(expression, token);
    }
  }
  return expression;
}

QString withMarkedUnits(QString expression) {
  for (const Token& token : ExpressionTokens(expression)) {
    if (token.kind == TokenKind::unit) {
      replaceToken(expression, token, markedUnit(token.sign));
    }
  }
  return expression;
}

QString markedUnit(std::string_view unit) {
  // The last letter: `{mu}` is `{u}`, and the library would take `~mu` for `~m` and a variable.
  return QString(u'~') + QLatin1Char(unit[unit.size() - 2]);
}

bool isLatin1(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
}

QSet<QString> valueNames(const QString& expression) {
  const ExpressionTokens tokens(expression);
  QSet<QString> names;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (isFreeName(tokens.all(), i) && !isCall(tokens.all(), i)) {
      names.insert(tokens.textAt(i).toString());
    }
  }
  return names;
}

bool mayAssign(const QString& expression) {
  const ExpressionTokens tokens(expression);
  return std::any_of(tokens.begin(), tokens.end(), isAssignment);
}

QString withMarkedColumns(QString expression, const QSet<QString>& columns) {
  const ExpressionTokens tokens(expression);
  QSet<QString> functions;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (isCall(tokens.all(), i)) {
      functions.insert(tokens.textAt(i).toString());
    }
  }
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const QString name = tokens.textAt(i).toString();
    if (isFreeName(tokens.all(), i) && !isCall(tokens.all(), i) && columns.contains(name) &&
        functions.contains(name)) {
      replaceToken(expression, tokens[i], markedColumn(name));
    }
  }
  return expression;
}

QString markedColumn(QString name) {
  name[0] = QChar(static_cast<char16_t>(kFirstMark + name[0].unicode()));
  return name;
}

QString withMarkedTargets(const QString& expression, const QSet<QString>& columns) {
  const ExpressionTokens tokens(expression);
  QString marked = expression;
  for (std::size_t i = tokens.size(); i-- > 0;) {  // from the end, since marks move what follows
    const std::size_t target = isAssignment(tokens[i]) ? tokenBefore(tokens.all(), i) : kNoToken;
    if (target != kNoToken && isFreeName(tokens.all(), target) &&
        columns.contains(withoutMarks(tokens.textAt(target).toString()))) {
      marked.insert(static_cast<qsizetype>(tokens[target].end()), QChar(kTargetMark));
    }
  }
  return marked;
}

QString markedTarget(const QString& name) {
  return name + QChar(kTargetMark);
}

QString withoutMarks(QString text) {
  text.remove(QChar(kTargetMark));
  for (QChar& c : text) {
    if (c >= QChar(kFirstMark) && c < QChar(kEndOfMarks)) {
      c = QChar(static_cast<char16_t>(c.unicode() - kFirstMark));
    }
  }
  return text;
}

QString withSignsForWords(QString expression, const QSet<QString>& columns) {
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const QStringView word = tokens.textAt(i);
    const bool isAnd = word == u"and";
    if ((isAnd || word == u"or") && isFreeName(tokens.all(), i) &&
        !columns.contains(word.toString())) {
      replaceToken(expression, tokens[i], isAnd ? QStringLiteral("&&") : QStringLiteral("||"));
    }
  }
  return expression;
}

int positionOfByte(std::string_view utf8, int bytePosition) {
  if (bytePosition < 0) {
    return -1;
  }
  const std::size_t end = std::min(utf8.size(), static_cast<std::size_t>(bytePosition));
  int units = 0;
  for (std::size_t i = 0; i < end; ++i) {
    if (utf8.substr(i).starts_with(kTargetMarkBytes)) {
      i += kTargetMarkBytes.size() - 1;
      continue;
    }
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool isContinuation = (byte & 0xC0) == 0x80;
    const bool takesTwoUnits = byte >= 0xF0;
    units += isContinuation ? 0 : takesTwoUnits ? 2 : 1;
  }
  return units;
}

}  // namespace kelvarin
