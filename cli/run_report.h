// What came of a run, for programs (JSON) and for people (a table).
#pragma once

#include <string>

#include "cli/value_json.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// {"status", "runState", "seconds", "actions": [...], "log": [...]}
Json jsonOf(const RunResult& result);

// One line an action with its rows in and out, a number a pin, and a last line with the time.
std::string rowTable(const RunResult& result);

}  // namespace kelvarin
