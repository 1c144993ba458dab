// What an editor shows about an expression while it is being typed.
#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "expression/evaluator/expression_check.h"
#include "expression/evaluator/expression_value.h"

namespace kelvarin {

// A change of the expression that one key makes.
struct QuickFix {
  QString label;  // "Replace by 'Discount'"
  qsizetype start = 0;
  qsizetype size = 0;
  QString replacement;
  QString columnToBind;  // it becomes an input variable of this name; empty: none
};

// Of one row: the result, or why there is none.
struct FormulaValue {
  long long row = 0;  // its number
  ExpressionValue value;
  QString failure;  // empty where there is a value
};

struct FormulaAnswer {
  quint64 version = 0;  // of the question
  ExpressionCheck check;
  QString message;  // for the line below the field: what is wrong and what to do; may be empty
  qsizetype faultStart = -1;  // where, for the squiggle; -1: nowhere
  qsizetype faultSize = 0;
  std::vector<QuickFix> fixes;
  QString resultType;                // in words
  QString engine;                    // its label, and why it is not a faster one
  std::vector<FormulaValue> values;  // for the first rows
  QString debuggerNote;              // why the step debugger cannot show it; empty where it can
  std::optional<QuickFix> debuggerFix;
  bool isComplete = true;  // false: it took too long and was given up
};

// The value of a part of the expression in the current row, else the first one.
struct PartAnswer {
  quint64 version = 0;
  qsizetype start = 0;
  qsizetype size = 0;
  FormulaValue value;
  bool isRowKnown = false;  // false: computed with the variables' samples
  bool mayDiffer = false;   // it calls what is random or depends on the clock
};

}  // namespace kelvarin
