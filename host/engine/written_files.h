// The files that an action of a run has written, with their sizes.
//
// Used by: run_graph.cpp.
// Threads: the engine thread, after the actions have been closed.
#pragma once

#include <vector>

#include <QDateTime>

#include "host/engine/run_graph.h"

namespace kelvarin {

// Where a name stands for several files ("sales.*.csv", "sales.???.side"), those that have changed
// since the run began.
std::vector<WrittenFile> writtenFiles(const ActionItem& action, const QDateTime& startOfRun);

}  // namespace kelvarin
