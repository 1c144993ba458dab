#include "expression/backends/expression_text.h"

#include <algorithm>

#include <QStringView>

namespace kelvarin {

namespace {

bool isDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}

bool isNameCharacter(QChar c) {
  return isDigit(c) || c == u'_' || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
         c.unicode() >= 0x80;
}

// The index behind a number and the letters that touch it (an exponent, a unit, hexadecimal
// digits).
qsizetype endOfNumber(QStringView text, qsizetype start) {
  qsizetype i = start;
  while (i < text.size() && (isNameCharacter(text[i]) || text[i] == u'.')) {
    const bool isExponent = text[i] == u'e' || text[i] == u'E';
    const bool isSigned = isExponent && i + 2 < text.size() &&
                          (text[i + 1] == u'+' || text[i + 1] == u'-') && isDigit(text[i + 2]);
    i += isSigned ? 2 : 1;
  }
  return i;
}

qsizetype endOfName(QStringView text, qsizetype start) {
  return std::find_if_not(text.begin() + start, text.end(), isNameCharacter) - text.begin();
}

bool isFollowedByBracket(QStringView text, qsizetype position) {
  while (position < text.size() && text[position].isSpace()) {
    ++position;
  }
  return position < text.size() && text[position] == u'(';
}

// Calls visit(start, end) for every name outside text literals.
template <typename Visitor>
void forEachName(QStringView text, Visitor visit) {
  qsizetype i = 0;
  while (i < text.size()) {
    if (text[i] == u'"') {
      i = endOfTextLiteral(text, i);
    } else if (isDigit(text[i])) {
      i = endOfNumber(text, i);
    } else if (isNameCharacter(text[i])) {
      const qsizetype end = endOfName(text, i);
      visit(i, end);
      i = end;
    } else {
      ++i;
    }
  }
}

}  // namespace

QString withoutLineBreaks(QString expression) {
  qsizetype i = 0;
  while (i < expression.size()) {
    const QChar c = expression.at(i);
    if (c == u'"') {
      i = endOfTextLiteral(std::as_const(expression), i);
      continue;
    }
    if (c == u'\r' || c == u'\n' || c == u'\t') {
      expression[i] = u' ';
    }
    ++i;
  }
  return expression;
}

bool isLatin1(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
}

QSet<QString> valueNames(const QString& expression) {
  QSet<QString> names;
  const QStringView text(expression);
  forEachName(text, [&](qsizetype start, qsizetype end) {
    if (!isFollowedByBracket(text, end)) {
      names.insert(text.sliced(start, end - start).toString());
    }
  });
  return names;
}

QString withSignsForWords(QString expression, const QSet<QString>& columns) {
  const QString original = expression;
  const QStringView text(original);
  forEachName(text, [&](qsizetype start, qsizetype end) {
    const QStringView word = text.sliced(start, end - start);
    const bool isAnd = word == QLatin1String("and");
    if ((isAnd || word == QLatin1String("or")) && !columns.contains(word.toString())) {
      expression.replace(start, end - start, isAnd ? QStringLiteral("&& ") : QStringLiteral("||"));
    }
  });
  return expression;
}

bool isVariableName(const QString& name) {
  return !name.isEmpty() && !isDigit(name.front()) &&
         std::all_of(name.begin(), name.end(), isNameCharacter);
}

int positionOfByte(std::string_view utf8, int bytePosition) {
  if (bytePosition < 0) {
    return -1;
  }
  const std::size_t end = std::min(utf8.size(), static_cast<std::size_t>(bytePosition));
  int units = 0;
  for (std::size_t i = 0; i < end; ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool isContinuation = (byte & 0xC0) == 0x80;
    const bool takesTwoUnits = byte >= 0xF0;
    units += isContinuation ? 0 : takesTwoUnits ? 2 : 1;
  }
  return units;
}

}  // namespace kelvarin
