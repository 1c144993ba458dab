// The value of every part of an expression in one row, and where a missing value comes from.
//
// Evaluates with the String Parser on an evaluator of its own, never with the running action's.
// Used by FormulaService for the step debugger.
// Threads: any one.
#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "ui/language/formula.h"
#include "ui/language/sub_expressions.h"

namespace kelvarin {

struct PartValue {
  ExpressionValue value;
  QString failure;         // why there is none; empty where there is one
  bool mayDiffer = false;  // it is random, depends on the clock, or reads a file
  bool isUsed = true;      // false in the branch of a condition that is not taken
  bool isOrigin = false;   // null or NaN, though none of its own parts is
  QString origin;          // "null because `discount` is null"; empty for all else

  bool hasValue() const { return failure.isEmpty(); }
};

// The expression by the engine that a run would take.
struct EngineValue {
  BackendKind engine = BackendKind::string;
  ExpressionValue value;
  QString failure;
  bool differs = false;  // from the String Parser's, in some bit or in the type
};

struct PartValues {
  quint64 version = 0;  // of the question
  SubExpressions tree;
  std::vector<PartValue> values;  // one a part of the tree
  long long row = -1;             // -1: computed with the variables' samples
  QString cause;  // why the whole expression is null or NaN; empty where it is neither
  std::optional<EngineValue> ofRun;  // none where a run takes the String Parser
  bool isComplete = true;            // false: not all parts were evaluated in the time there is
};

// With the values of `formula.current`, else of the first row, else the samples. Parts whose turn
// has not come at the deadline have a failure.
PartValues evaluateParts(const Formula& formula, std::chrono::steady_clock::time_point deadline);
// The tree, with this failure for each part.
PartValues partsWithoutValues(const Formula& formula, const QString& failure);

}  // namespace kelvarin
