// The text of an expression -> its typed tree, for what is evaluated by the batch.
//
// Only for expressions that the String Parser has compiled: it alone says what is wrong with one.
// Precedence and associativity are the String Parser's. Whatever is not known to have the same
// results is refused: assignments, arrays, random numbers, files, functions of the library itself,
// and types that depend on the row or that the String Parser would refuse there.
// Used by ExpressionSet.
#pragma once

#include <QString>

#include "base/result.h"
#include "expression/backends/expression_scope.h"
#include "expression/batches/batch_refusal.h"
#include "expression/batches/typed_tree.h"

namespace kelvarin {

// Names are those that `scope` has for the String Parser.
Result<TypedTree, BatchRefusal> typedTreeOf(const QString& expression,
                                            const ExpressionScope& scope);

}  // namespace kelvarin
