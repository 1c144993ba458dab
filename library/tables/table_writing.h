// Writing a stream to a columnar file: a graph of a stream and the action that writes such files.
//
// All or nothing: the old file stays until the new one is whole.
// Threads: any.
#pragma once

#include "library/runs/stream_source.h"
#include "library/runs/whole_run.h"

namespace kelvarin {

struct TableSettings {
  int rowsInBlock = 20'000;  // as `kelvarin gel import` writes them
  int split = KELVARIN_SPLIT_NONE;
  double splitMebibytes = 100.0;
  QString splitColumn;
  bool separatesColumns = false;
  bool createsFolder = false;
  InputSettings input;
  WorkSettings work;
  kelvarin_progress progress{};
};

// The number of rows that were written.
Outcome<long long> writeTable(const QString& path, InputStream stream,
                              const TableSettings& settings);

}  // namespace kelvarin
