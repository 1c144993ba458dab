// What the functions that an expression calls ask of those who evaluate or show it.
//
// Used by the evaluator and the block filter before the first row, and by editors.
#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "expression/dates/date_context.h"
#include "expression/functions/function_line.h"
#include "expression/tokens/token.h"

namespace kelvarin {

DateNeeds dateNeedsOf(const QStringList& expressions);

// Prepares `dates` for the functions that the expressions call. Date inputs need all of it.
DateStatus prepareDates(DateContext& dates, const QStringList& expressions, bool hasDateInputs);

// The first name of a function that keeps the expression from being shown step by step, since the
// String Parser does not know it. Nothing when the expression can be shown.
std::optional<Token> undebuggableCall(const QString& expression);
// How the String Parser spells a function that only the other engines know by this name; empty
// where it has none of this kind.
QString debuggableSpelling(QStringView name);

// The first name of a function whose results depend on this, if one is called.
std::optional<Token> callOf(Source source, const QString& expression);

// A text literal that a function cannot compute any row with.
struct FaultyLiteral {
  Token token;
  QString message;
  std::size_t position = 0;  // in the expression
};
// The first one that a function is called with.
std::optional<FaultyLiteral> faultyLiteral(const QString& expression);

}  // namespace kelvarin
