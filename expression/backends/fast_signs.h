// Operators that the Fast back-end's library cannot read as they are written, or computes
// in a way of its own: powers, casts, shifts and bit operators. In their place it is given one
// control character and blanks, so that positions hold.
#pragma once

#include <optional>

#include <muParser.h>

#include <QSet>
#include <QString>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// The library has fewer priorities than the language: bit operators of several kinds, or beside
// comparisons, are for the String back-end. Signs that no user may write are refused too.
std::optional<ExpressionError> refusalOfSigns(const QString& expression);

// A cast is none where a column has its name.
QString withSignCharacters(QString expression, const QSet<QString>& columns);
// What the user wrote, in a message of the library.
QString withWrittenSigns(QString message);

// Defines the operators. Throws what the library throws.
void addSigns(mu::Parser& parser);

}  // namespace kelvarin
