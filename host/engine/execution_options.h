// How a graph is run.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QString>

#include "host/contract/batch_collector.h"

namespace kelvarin {

enum class ActionPhase { waiting, running, finished, failed };

struct ActionProgress {
  ActionPhase phase = ActionPhase::waiting;
  std::vector<long long> rowsIn;   // one number a pin
  std::vector<long long> rowsOut;  // one number a pin
  double fractionDone = -1.0;      // 0 to 1; -1 when unknown
  double seconds = -1.0;           // of work in the action itself; -1 when not measured
};

struct RunProgress {
  long long rowsRead = 0;                 // by the sources that have begun
  double fractionDone = -1.0;             // 0 to 1; -1 when unknown
  std::vector<ActionProgress> actions{};  // in the graph's order; where `reportsActions` is set
};

struct ExecutionOptions {
  // Rows that wait for their reader take this many bytes of memory a queue; what is beyond goes to
  // a temporary file.
  long long queueMemoryBytes = 64LL << 20;
  // Where temporary files are made; empty: the system's folder for them.
  QString temporaryFolder;
  // Rows in a batch at most, however small; 0: as many as suit the processor's caches. The results
  // are the same.
  int rowsInBatch = 0;

  // All threads of a run are at work at the same time, also where there are fewer processors; for
  // tests.
  bool isOversubscribed = false;

  BatchSize batchSize() const {
    BatchSize size;
    if (rowsInBatch > 0) {
      size.rows = static_cast<std::size_t>(rowsInBatch);
    }
    return size;
  }
  // Called on the engine thread some ten times a second during the run; may be empty.
  std::function<void(const RunProgress&)> progress;
  // Progress and results have what became of each action, with its time.
  bool reportsActions = false;
  // Actions that compute columns count the missing values in them.
  bool countsValues = false;
  // Actions that go on after rows that failed report them: HostServices::rowRejected().
  bool reportsRejectedRows = false;
  // Sources end after so many rows, as if their tables had no more; none: they give all.
  std::optional<long long> rowsOfSource;
};

}  // namespace kelvarin
