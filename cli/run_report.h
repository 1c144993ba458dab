// What came of a run, for people.
#pragma once

#include <string>

#include "host/engine/run_graph.h"

namespace kelvarin {

// One line an action with its rows in and out, a number a pin, and a last line with the time.
std::string rowTable(const RunResult& result);

}  // namespace kelvarin
