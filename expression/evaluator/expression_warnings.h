// What an expression most likely does not mean: an assignment where a comparison was wanted, a
// comparison with the missing value.
//
// Such expressions compile and run. Logged once an expression by actions/frame.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin {

// Texts to log, the name of the expression in each; empty when nothing is suspicious.
QStringList warningsAbout(const QString& expressionName, const QString& expression);

}  // namespace kelvarin
