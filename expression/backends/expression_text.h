// An expression as the back-ends need it: without line breaks, with the names it uses, in their
// encodings.
//
// Positions count 16-bit units of the user's text, which every preparation keeps.
// A text literal is "..."; a backslash hides the character behind it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <QSet>
#include <QString>

#include "jit/units.h"

namespace kelvarin {

// CR, LF and TAB outside text literals become blanks.
QString withoutLineBreaks(QString expression);

// True when the native and the Fast back-end can take the text.
bool isLatin1(const QString& text);

// The names that stand for values: those not followed by an opening bracket, and no part of a
// number or a literal.
QSet<QString> valueNames(const QString& expression);

// Writes the word operators `and` and `or` as `&&` and `||` of the same length, but for names of
// `columns`.
QString withSignsForWords(QString expression, const QSet<QString>& columns);

// Marks the columns of an expression that calls a function by the same name, for a library that has
// one table of names. The mark is a character of its own in place of the first one.
QString withMarkedColumns(QString expression, const QSet<QString>& columns);
QString markedColumn(QString name);

// Marks the columns of an expression that it assigns to, so that a library can tell them from those
// that are read. The mark is a character behind the name that counts for no position.
QString withMarkedTargets(const QString& expression, const QSet<QString>& columns);
QString markedTarget(const QString& name);

// What the user wrote, without marks of either kind.
QString withoutMarks(QString text);

// Writes the units behind values, such as `{k}`, in the form of markedUnit(), with blanks up to the
// same length.
QString withMarkedUnits(QString expression);
// `~k` for `{k}`, and `~u` for both spellings of micro.
QString markedUnit(const jit::Unit& unit);

// The bytes for a library that takes Latin-1.
inline std::string latin1(const QString& text) {
  return text.toLatin1().toStdString();
}

bool isNameCharacter(QChar c);

// A valid name in every back-end, characters beyond ASCII apart.
bool isVariableName(const QString& name);

// The 16-bit position of a byte position in UTF-8, without the marks of withMarkedTargets(), and -1
// for -1.
int positionOfByte(std::string_view utf8, int bytePosition);

// The index behind the text literal that starts at `quote`; the text's size when it does not end.
template <typename Text>
auto endOfTextLiteral(const Text& text, decltype(text.size()) quote) {
  auto i = quote + 1;
  while (i < text.size() && text[i] != '"') {
    i += text[i] == '\\' ? 2 : 1;
  }
  return i < text.size() ? i + 1 : text.size();
}

}  // namespace kelvarin
