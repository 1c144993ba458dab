// The side of a step debugger that an action sees.
//
// An editor implements it; tests use a fake. While one is attached, an action evaluates with the String back-end and
// reports every row.
// Threads: called on the engine thread; waitForStep() blocks it until the user steps or stops.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin {

class RowObserver {
 public:
  virtual ~RowObserver() = default;

  // The label of each output's back-end, once, at the first row.
  virtual void backendsChosen(const QStringList& labels) = 0;
  // The current values of the input variables, in their order, and of the outputs; "true" or "false" for a filter.
  virtual void rowEvaluated(const QStringList& variableValues, const QStringList& results) = 0;
  // False when the user stopped.
  virtual bool waitForStep() = 0;
};

}  // namespace kelvarin
