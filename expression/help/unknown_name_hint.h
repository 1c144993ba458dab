// What a user may have meant by a name that an expression's back-end does not know.
//
// Used by expression_hint.h.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// Empty when the error is about something else. `columns` are those of the input, whether the
// action has made variables of them or not.
// `advice` stands behind the hint about a name that is near to no other, null for none;
// `languageList` lists the names of the language.
QString unknownNameHint(const ExpressionError& error, const QString& expression,
                        const QStringList& variables, const QStringList& columns,
                        const char* advice = nullptr,
                        const char* languageList = "'kelvarin functions'");

}  // namespace kelvarin
