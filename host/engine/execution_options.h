// How a graph is run.
#pragma once

#include <functional>

#include <QString>

namespace kelvarin {

struct RunProgress {
  long long rowsRead = 0;      // by the sources that have begun
  double fractionDone = -1.0;  // 0 to 1; -1 when unknown
};

struct ExecutionOptions {
  // Rows that wait for their reader take this many bytes of memory a queue; what is beyond goes to
  // a temporary file.
  long long queueMemoryBytes = 64LL << 20;
  // Where temporary files are made; empty: the system's folder for them.
  QString temporaryFolder;
  // Actions compute for many rows at once where a source knows them together. The results are the
  // same without.
  bool looksAhead = true;
  // Called on the engine thread from time to time during the run; may be empty.
  std::function<void(const RunProgress&)> progress;
};

}  // namespace kelvarin
