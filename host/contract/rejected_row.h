// A row that failed in an action which goes on after such rows.
//
// Used by: HostServices::rowRejected().
#pragma once

#include <QString>

class OneRow;

namespace kelvarin {

struct RejectedRow {
  long long number = 0;  // of the row at the action's first input pin, counted from 0
  QString output;        // of the action, whose value is missing; of a filter, "condition"
  QString message;
  const OneRow* input = nullptr;  // its values, while it is reported
};

}  // namespace kelvarin
