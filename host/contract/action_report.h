// What an action reports about its part of a run or a check when it is closed, beyond the rows that
// the engine counts.
//
// Used by: HostServices::actionReported().
#pragma once

#include <vector>

#include <QString>

namespace kelvarin {

// Numbers are -1 where nobody has counted.
struct OutputReport {
  QString name;      // of the column; of a filter, "condition"
  QString engine;    // that evaluated it, as users know it
  QString slowedBy;  // the token that a faster engine does not know; empty where there is none
  QString reason;    // why not a faster engine; empty for the fastest
  // Rows are evaluated by the batch. If not, the token of this expression that forbids it; empty
  // where there is none, as where another expression of the action does, or rows have.
  bool isByBatch = false;
  QString batchRefusal;
  long long nulls = -1;
  long long nans = -1;
  long long failures = -1;  // evaluations that failed and did not stop the run
};

struct ActionReport {
  std::vector<OutputReport> outputs;
  long long blocksRead = -1;
  long long blocksSkipped = -1;  // that a block filter has ruled out
};

}  // namespace kelvarin
