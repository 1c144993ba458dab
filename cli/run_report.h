// What came of a run, for programs (JSON) and for people (a table).
#pragma once

#include <string>

#include "cli/value_json.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// {"status", "runState", "seconds", "actions": [...], "log": [...]}. In a check an action that computes the names of its
// new columns has them as "newColumns".
Json jsonOf(const RunResult& result);

// The new columns whose names actions computed: a line an action, and below it the names, of which at most 50 are
// shown. Empty where no action did.
std::string columnList(const RunResult& result);

// One line an action with its rows in and out, a number a pin, and a last line with the time.
std::string rowTable(const RunResult& result);

}  // namespace kelvarin
