// An expression as the back-ends need it: without line breaks, with the names it uses, in their
// encodings.
//
// Positions count 16-bit units of the user's text, which every preparation keeps.
#pragma once

#include <string>
#include <string_view>

#include <QSet>
#include <QString>

#include "expression/tokens/expression_tokens.h"
#include "expression/tokens/units.h"

namespace kelvarin {

// CR, LF and TAB outside text literals become blanks.
QString withoutLineBreaks(QString expression);

// True when the native and the Fast back-end can take the text.
bool isLatin1(const QString& text);

// The names that stand for values: those not followed by an opening bracket.
QSet<QString> valueNames(const QString& expression);

// Evaluating the expression may change a variable.
bool mayAssign(const QString& expression);

// Writes the word operators `and` and `or` as `&&` and `||` of the same length, but for names of
// `columns`.
QString withSignsForWords(QString expression, const QSet<QString>& columns);

// Marks the columns of an expression that calls a function by the same name, for a library that has
// one table of names. The mark is a character of its own in place of the first one.
QString withMarkedColumns(QString expression, const QSet<QString>& columns);
QString markedColumn(QString name);

// Marks the columns of an expression that it assigns to, so that a library distinguishes them from
// those that are read. The mark is a character behind the name that counts for no position.
QString withMarkedTargets(const QString& expression, const QSet<QString>& columns);
QString markedTarget(const QString& name);

// What the user wrote, without marks of either kind.
QString withoutMarks(QString text);

// Writes the units behind values, such as `{k}`, in the form of markedUnit(), with blanks up to the
// same length.
QString withMarkedUnits(QString expression);
// `~k` for `{k}`, and `~u` for both spellings of micro.
QString markedUnit(std::string_view unit);

// The bytes for a library that takes Latin-1.
inline std::string latin1(const QString& text) {
  return text.toLatin1().toStdString();
}

// The 16-bit position of a byte position in UTF-8, without the marks of withMarkedTargets(), and -1
// for -1.
int positionOfByte(std::string_view utf8, int bytePosition);

}  // namespace kelvarin
