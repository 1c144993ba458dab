// At which rows a debug run stops for the user.
//
// Set by the panel, obeyed by DebugSession on the engine's thread.
#pragma once

#include <QString>

#include "actions/frame/row_observer.h"

namespace kelvarin {

struct DebugRules {
  bool everyRow = true;
  long long row = -1;      // the one with this number, counted from 0; -1: none
  bool atFailure = false;  // an output failed
  bool atNull = false;     // a result is null or NaN
  // A row at which it is true is a breakpoint; empty: none. It may refer to the variables of the
  // row and to its results.
  QString condition;
  int element = 0;  // of vectors, which the condition sees

  bool operator==(const DebugRules&) const = default;
};

enum class StopReason {
  none,        // the row went by
  step,        // every row stops
  breakpoint,  // the condition holds
  condition,   // it cannot be evaluated, which the row's note explains
  row,         // its number was asked for
  failure,     // an output failed
  null,        // a result is null or NaN
  lastRow      // its failure ends the run; nothing is waited for
};

// The first rule that stops at the row, but for the condition.
StopReason stopReason(const DebugRules& rules, const ObservedRow& row);

}  // namespace kelvarin
