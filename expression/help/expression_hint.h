// What a user may have meant by an expression that a back-end refuses.
//
// Used by actions/frame, the block filter and `kelvarin eval`, behind the error.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"

namespace kelvarin {

struct HintNames {
  QStringList variables;  // of the action
  QStringList columns;    // of its input, be they variables or not
  // Where a value for an unknown name comes from, with %1 for the name; null where this needs no
  // word.
  const char* adviceOnUnknown = nullptr;
  // Which command or page lists the names of the language.
  const char* languageList = "'kelvarin functions'";
};

// The name under which expressions can use a column: its own, or one that is like it.
QString variableNameFor(const QString& column);

// Empty where nothing is known about such a mistake.
QString expressionHint(const ExpressionError& error, const QString& expression,
                       const HintNames& names);

}  // namespace kelvarin
