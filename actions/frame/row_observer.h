// The side of a step debugger that an action sees.
//
// An editor implements it; tests use a fake. While one is attached, an action evaluates with the
// String back-end, reports every row and waits after it.
// Threads: called on the engine thread; waitForStep() blocks it until the user steps or stops.
#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"
#include "expression/evaluator/expression_value.h"

namespace kelvarin {

// What the values of a row belong to, the same for all rows of a run.
struct RowNames {
  std::vector<ShownVariable> variables;
  QStringList results;  // names of columns, of vectors element by element; of a filter, its type
  int outputCount = 1;  // each yields one result, of vectors one for each element
};

// An output that failed on a row.
struct ObservedFailure {
  QString text;     // as the log shows it where it stops the run
  int output = -1;  // -1: no output, but a variable could not be loaded
  QString name;     // of the result that it lacks, or of that variable
  ExpressionError error;
};

struct ObservedRow {
  long long number = 0;     // counted from 0
  bool isEvaluated = true;  // false: it was only counted, as in sampling
  bool isLast = false;      // its last failure ends the run; no step is waited for
  std::shared_ptr<const RowNames> names;
  std::vector<ExpressionValue> variables;  // in the order of their names
  std::vector<ExpressionValue> results;    // of their names; none where a failure ends the run
  std::vector<ObservedFailure> failures;
};

class RowObserver {
 public:
  virtual ~RowObserver() = default;

  // The label of each output's back-end, once, at the first row.
  virtual void backendsChosen(const QStringList& labels) = 0;
  virtual void rowEvaluated(const ObservedRow& row) = 0;
  // False when the user stopped.
  virtual bool waitForStep() = 0;
};

}  // namespace kelvarin
