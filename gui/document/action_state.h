// What a run, or the last one, says about one action.
#pragma once

#include <vector>

#include <QString>

namespace kelvarin {

struct ActionState {
  enum class Kind { none, waiting, running, done, failed, stopped };

  Kind kind = Kind::none;
  bool hasWarning = false;
  bool isStale = false;            // the graph has changed above it since
  double fractionDone = -1.0;      // 0 to 1; -1 when unknown
  std::vector<long long> rowsIn;   // one number a pin
  std::vector<long long> rowsOut;  // one number a pin
  double seconds = 0.0;            // of computing in the action itself
  QString message;                 // of a failure or of the first warning
  bool operator==(const ActionState&) const = default;
};

}  // namespace kelvarin
