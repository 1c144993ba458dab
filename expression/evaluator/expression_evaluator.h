// All that one action needs to evaluate its expressions, in three parts: the expressions, and their
// evaluation by rows and by batches.
//
// Used by every expression action, the block filter of the columnar reader and `kelvarin eval`.
// Configure and compile the expressions, then start(), then evaluate.
#pragma once

#include "expression/evaluator/batch_evaluation.h"
#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/row_evaluation.h"

namespace kelvarin {

struct ExpressionEvaluator {
  ExpressionSet expressions;
  RowEvaluation rows{expressions};
  BatchEvaluation batches{expressions};

  // To be called when the last output has been compiled.
  void start() {
    rows.start();
    batches.start();
  }
  void clear() {
    batches.clear();
    rows.clear();
    expressions.clear();
  }
};

}  // namespace kelvarin
