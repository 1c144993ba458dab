// Finds what the String back-end's library must not see: it would crash, hang or report the wrong
// position.
#pragma once

#include <optional>

#include <QString>

#include "expression/errors/expression_error.h"

namespace kelvarin {

// `expression` is prepared: no line breaks, signs for word operators. `userText` is what the user
// wrote.
std::optional<ExpressionError> hazardIn(const QString& expression, const QString& userText);

}  // namespace kelvarin
