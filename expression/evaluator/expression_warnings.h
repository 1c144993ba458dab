// What an expression most likely does not mean: an assignment where a comparison was wanted, a
// comparison with the missing value, a chain of comparisons, a text in a function of numbers, a
// text as a condition.
//
// Such expressions compile and run. Logged once an expression by actions/frame. Each operation
// returns the texts to log, the name of the expression in each; empty when nothing is suspicious.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/backends/text_arguments.h"

namespace kelvarin {

enum class ExpressionPurpose { value, condition };

// From what it looks like.
QStringList warningsAbout(const QString& expressionName, const QString& expression,
                          ExpressionPurpose purpose = ExpressionPurpose::value);

// From what its evaluation found, in a check or in all rows of a run.
QStringList warningsOfCheck(const QString& expressionName, const TextArguments& found);
QStringList warningsOfRun(const QString& expressionName, const TextArguments& found);
QString warningAboutTextCondition(const QString& expressionName);

}  // namespace kelvarin
