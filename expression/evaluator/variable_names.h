// What is wrong with the names that a user gave to input variables.
//
// Used where variables are bound for a run or a check; the texts are for the log.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/evaluator/variables.h"

namespace kelvarin {

// A variable may not have the name of the row number while that is offered.
Status<QString> checkNames(const std::vector<InputVariable>& inputs,
                           const EvaluationOptions& options);

// Variables that have the name of one before them: expressions see the first one only.
QStringList warningsAboutNames(const std::vector<InputVariable>& inputs);

}  // namespace kelvarin
