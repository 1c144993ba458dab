// What the Fast back-end's library cannot read as it is written, or computes in a way of its own:
// powers, casts, shifts and bit operators, and the escapes of texts. The library gets one control
// character and blanks instead, so that positions hold.
#pragma once

#include <optional>
#include <string>

#include <muParser.h>

#include <QSet>
#include <QString>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// The library has fewer priorities than the language: bit operators of several kinds, or beside
// comparisons, are for the String back-end. Signs that no user may write are refused too, and
// escapes that mean nothing.
std::optional<ExpressionError> refusalOfSigns(const QString& expression);

// A cast is none where a column has its name. `expression` has been found free of refusals.
QString withSignCharacters(QString expression, const QSet<QString>& columns);
// What the user wrote, in a message of the library.
QString withWrittenSigns(QString message);
// What a text stands for that the library passes to a function.
std::string withoutEscapes(std::string latin1);

// Defines the operators. Throws what the library throws.
void addSigns(mu::Parser& parser);

}  // namespace kelvarin
