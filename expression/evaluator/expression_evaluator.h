// All that one action needs to evaluate its expressions row by row, in two parts: the expressions,
// and their evaluation.
//
// Used by every expression action, the block filter of the columnar reader and `kelvarin eval`.
// Configure and compile the expressions, then start(), then evaluate. Whole batches are evaluated
// by a BatchProgram that is made from the expressions.
#pragma once

#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/row_evaluation.h"

namespace kelvarin {

struct ExpressionEvaluator {
  ExpressionSet expressions;
  RowEvaluation rows{expressions};

  // To be called when the last output has been compiled.
  void start() { rows.start(); }
  void clear() {
    rows.clear();
    expressions.clear();
  }
};

}  // namespace kelvarin
