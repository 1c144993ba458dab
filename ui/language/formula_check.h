// What an editor shows about a formula: is it right, what is wrong and how to mend it, the result's
// type, the engine, and the values of the first rows.
//
// Computed by FormulaService beside the user-interface thread.
// Threads: any one.
#pragma once

#include <chrono>

#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"

namespace kelvarin {

enum class CheckDepth {
  evaluated,
  compiledOnly  // nothing is evaluated, since an earlier evaluation does not come back
};

// Rows whose turn has not come at the deadline have no value.
FormulaAnswer checkFormula(const Formula& formula, CheckDepth depth,
                           std::chrono::steady_clock::time_point deadline);

// Of the part at these characters, or the smallest one around them.
PartAnswer evaluatePart(const Formula& formula, qsizetype start, qsizetype size);

// The answer of a check that did not come back.
FormulaAnswer answerAboutTime();

}  // namespace kelvarin
