// Whether the files that the actions of a graph name get in each other's way.
//
// Asked before anything of the graph is opened, in a run as in a check. Names that come with rows
// are looked at when they come, by the actions.
// Threads: one at a time.  Errors: logged on behalf of the action.
#pragma once

#include "host/engine/graph.h"

namespace kelvarin {

// False: two actions write one file, or one writes what another reads.
[[nodiscard]] bool checkUsedFiles(const Graph& graph);
// What would happen to files that are there now; for a check, since the actions of a run say it
// themselves.
void reportFileWarnings(const Graph& graph);

}  // namespace kelvarin
