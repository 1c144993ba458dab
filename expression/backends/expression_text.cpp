#include "expression/backends/expression_text.h"

#include <algorithm>

#include <QStringView>

#include "expression/backends/equals_signs.h"

namespace kelvarin {

namespace {

// Of private use: the marked letters of ASCII, the only ones that names of functions begin with.
constexpr char16_t kFirstMark = 0xE000;
constexpr char16_t kEndOfMarks = kFirstMark + 0x80;
constexpr char16_t kTargetMark = 0xE0FF;
constexpr std::string_view kTargetMarkBytes = "\xEE\x83\xBF";

bool isDigit(QChar c) {
  return c >= u'0' && c <= u'9';
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

// Whether a value may end with the character.
bool isEndOfValue(QChar c) {
  return isNameCharacter(c) || c == u')' || c == u']' || c == u'.';
}

const jit::Unit* unitAt(const QString& text, qsizetype position) {
  const QStringView rest = QStringView(text).sliced(position);
  const auto found = std::find_if(jit::kUnits.begin(), jit::kUnits.end(), [&](const auto& unit) {
    return rest.startsWith(
        QLatin1String(unit.text.data(), static_cast<qsizetype>(unit.text.size())));
  });
  return found == jit::kUnits.end() ? nullptr : &*found;
}

// Calls visit(index) for every character outside text literals.
template <typename Visitor>
void forEachPlainCharacter(const QString& text, Visitor visit) {
  qsizetype i = 0;
  while (i < text.size()) {
    if (text[i] == u'"') {
      i = endOfTextLiteral(text, i);
    } else {
      visit(i++);
    }
  }
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

bool isNameCharacter(QChar c) {
  return isDigit(c) || c == u'_' || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
         c.unicode() >= 0x80;
}

QString withoutLineBreaks(QString expression) {
  forEachPlainCharacter(std::as_const(expression), [&](qsizetype i) {
    const QChar c = expression.at(i);
    if (c == u'\r' || c == u'\n' || c == u'\t') {
      expression[i] = u' ';
    }
  });
  return expression;
}

QString withMarkedUnits(QString expression) {
  const QString original = expression;
  bool isBehindValue = false;
  forEachPlainCharacter(original, [&](qsizetype i) {
    const QChar c = original.at(i);
    const jit::Unit* unit = c == u'{' && isBehindValue ? unitAt(original, i) : nullptr;
    if (unit != nullptr) {
      const auto length = static_cast<qsizetype>(unit->text.size());
      expression.replace(i, length, markedUnit(*unit).leftJustified(length));
    }
    isBehindValue = c.isSpace() ? isBehindValue : isEndOfValue(c);
  });
  return expression;
}

QString markedUnit(const jit::Unit& unit) {
  // The last letter: `{mu}` is `{u}`, and the library would take `~mu` for `~m` and a variable.
  return QString(u'~') + QLatin1Char(unit.text[unit.text.size() - 2]);
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

QString withMarkedColumns(QString expression, const QSet<QString>& columns) {
  const QString original = expression;
  const QStringView text(original);
  QSet<QString> functions;
  forEachName(text, [&](qsizetype start, qsizetype end) {
    if (isFollowedByBracket(text, end)) {
      functions.insert(text.sliced(start, end - start).toString());
    }
  });
  forEachName(text, [&](qsizetype start, qsizetype end) {
    const QString name = text.sliced(start, end - start).toString();
    if (columns.contains(name) && functions.contains(name) && !isFollowedByBracket(text, end)) {
      expression.replace(start, name.size(), markedColumn(name));
    }
  });
  return expression;
}

QString markedColumn(QString name) {
  name[0] = QChar(static_cast<char16_t>(kFirstMark + name[0].unicode()));
  return name;
}

QString withMarkedTargets(const QString& expression, const QSet<QString>& columns) {
  QString marked = expression;
  const QList<EqualsSign> signs = equalsSigns(expression);
  for (auto sign = signs.rbegin(); sign != signs.rend(); ++sign) {
    const QStringView left = QStringView(expression).first(sign->start);
    qsizetype end = left.size();
    while (end > 0 && left[end - 1].isSpace()) {
      --end;
    }
    qsizetype start = end;
    while (start > 0 && isNameCharacter(left[start - 1])) {
      --start;
    }
    const QString name = withoutMarks(left.sliced(start, end - start).toString());
    if (sign->isAssignment() && columns.contains(name)) {
      marked.insert(end, QChar(kTargetMark));
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
