#include "expression/errors/expression_mark.h"

#include <algorithm>

#include <QList>

#include "expression/errors/messages.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

constexpr qsizetype kShownWidth = 76;
constexpr qsizetype kShownBefore = 44;  // of it, in front of the mark

struct Character {
  char32_t code;
  qsizetype position;  // of its first 16-bit unit
  int width;           // columns on a terminal
};

// Scripts whose characters take two columns.
constexpr struct {
  char32_t first;
  char32_t last;
} kWide[] = {{0x1100, 0x115F}, {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xA960, 0xA97C},
             {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
             {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

int widthOf(char32_t code) {
  switch (QChar::category(code)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
      return 0;
    default:
      break;
  }
  const auto contains = [code](const auto& range) {
    return code >= range.first && code <= range.last;
  };
  return std::any_of(std::begin(kWide), std::end(kWide), contains) ? 2 : 1;
}

// What would break the line or has no width of its own is a blank, so that the mark stands right.
char32_t shown(char32_t code) {
  const QChar::Category category = QChar::category(code);
  const bool isShown = category != QChar::Other_Control && category != QChar::Other_Format &&
                       category != QChar::Other_Surrogate && category != QChar::Separator_Line &&
                       category != QChar::Separator_Paragraph;
  return isShown ? code : U' ';
}

QList<Character> charactersOf(const QString& text) {
  QList<Character> characters;
  for (qsizetype i = 0; i < text.size();) {
    const qsizetype first = i;
    char32_t code = text[i++].unicode();
    if (text[first].isHighSurrogate() && i < text.size() && text[i].isLowSurrogate()) {
      code = QChar::surrogateToUcs4(text[first], text[i++]);
    }
    code = shown(code);
    characters.append({code, first, widthOf(code)});
  }
  return characters;
}

qsizetype widthOf(const QList<Character>& characters, qsizetype begin, qsizetype end) {
  qsizetype width = 0;
  for (qsizetype i = begin; i < end; ++i) {
    width += characters[i].width;
  }
  return width;
}

// Not the beginning or end of a longer name.
bool standsAlone(const QString& expression, qsizetype position, qsizetype size) {
  const auto joins = [](QChar left, QChar right) {
    return isNameCharacter(left.unicode()) && isNameCharacter(right.unicode());
  };
  const qsizetype end = position + size;
  return (position == 0 || !joins(expression[position - 1], expression[position])) &&
         (end == expression.size() || !joins(expression[end - 1], expression[end]));
}

// The last position up to `limit`, outside of texts; -1 when there is none.
qsizetype lastOccurrence(const QString& expression, const QString& token, qsizetype limit) {
  qsizetype found = -1;
  for (const Token& one : ExpressionTokens(expression)) {
    const qsizetype position = positionOf(one);
    const bool matches = position <= limit &&
                         QStringView(expression).sliced(position).startsWith(token) &&
                         standsAlone(expression, position, token.size());
    found = matches ? position : found;
  }
  return found;
}

// The position of the quote that opens a text without an end; -1 when each text has its end.
qsizetype unclosedText(const QString& expression) {
  for (const Token& token : ExpressionTokens(expression)) {
    if (token.fault == TokenFault::unclosed) {
      return positionOf(token);
    }
  }
  return -1;
}

// Libraries may report the position behind the token.
qsizetype beginOfToken(const QString& expression, const ExpressionError& error) {
  const qsizetype position = std::min<qsizetype>(error.position, expression.size());
  const qsizetype quote = unclosedText(expression);
  if (quote >= 0 && position == expression.size()) {
    return quote;
  }
  if (error.token.isEmpty() || QStringView(expression).sliced(position).startsWith(error.token)) {
    return position;
  }
  const qsizetype before = lastOccurrence(expression, error.token, position);
  return before >= 0 && before + error.token.size() == position ? before : position;
}

}  // namespace

ExpressionError withPosition(ExpressionError error, const QString& expression) {
  if (error.position < 0 && !error.token.isEmpty()) {
    error.position = static_cast<int>(lastOccurrence(expression, error.token, expression.size()));
  }
  return error;
}

QString markedExpression(const QString& expression, const ExpressionError& error) {
  const QList<Character> characters = charactersOf(expression);
  const bool hasMark = error.position >= 0;
  const qsizetype position = hasMark ? beginOfToken(expression, error) : 0;
  const auto indexOf = [&](qsizetype unit) {
    return std::find_if(characters.begin(), characters.end(),
                        [unit](const Character& one) { return one.position >= unit; }) -
           characters.begin();
  };
  const qsizetype mark = indexOf(position);
  qsizetype begin = mark;
  while (begin > 0 && widthOf(characters, begin - 1, mark) <= kShownBefore) {
    --begin;
  }
  if (widthOf(characters, 0, characters.size()) <= kShownWidth) {
    begin = 0;
  }
  qsizetype end = begin;
  while (end < characters.size() && widthOf(characters, begin, end + 1) <= kShownWidth) {
    ++end;
  }
  const QString cut = messages::cut();
  QString line = begin > 0 ? cut : QString();
  for (qsizetype i = begin; i < end; ++i) {
    line += QString::fromUcs4(&characters[i].code, 1);
  }
  line += end < characters.size() ? cut : QString();
  if (!hasMark) {
    return line;
  }
  const bool isAtToken = QStringView(expression).sliced(position).startsWith(error.token);
  const qsizetype marked = isAtToken ? std::min(indexOf(position + error.token.size()), end) : mark;
  const qsizetype before = (begin > 0 ? cut.size() : 0) + widthOf(characters, begin, mark);
  return line + u'\n' + QString(before, u' ') +
         QString(std::max<qsizetype>(1, widthOf(characters, mark, marked)), u'^');
}

}  // namespace kelvarin
