// How a run has evaluated its expressions and where its time went, for people.
//
// Used by: `kelvarin run --explain` and the commands that make their graph themselves.
#pragma once

#include <QString>

#include "host/engine/run_graph.h"

namespace kelvarin {

// A line for each action, with its time, and below it one for each of its expressions, with the
// engine, what keeps it from a faster one, and how many results were missing or failed.
QString explanationOf(const RunResult& result);

}  // namespace kelvarin
