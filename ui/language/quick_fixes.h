// What is wrong with an expression, where, and the changes that may mend it.
//
// Threads: any.
#pragma once

#include <vector>

#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"

namespace kelvarin {

struct FaultRange {
  qsizetype start = -1;  // -1: nowhere
  qsizetype size = 0;
};

// The first name that means nothing, where the check found such an error; empty where it did not.
FaultRange unknownNameOf(const ExpressionCheck& check, const Formula& formula);

// Of the fault that the check found.
FaultRange faultRangeOf(const ExpressionCheck& check, const Formula& formula);

// The most likely one first.
std::vector<QuickFix> quickFixesOf(const ExpressionCheck& check, const Formula& formula);

}  // namespace kelvarin
