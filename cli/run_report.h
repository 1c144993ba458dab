// What came of a run, for programs (JSON) and for people (a table).
#pragma once

#include <string>

#include "cli/value_json.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// {"status", "runState", "seconds", "actions": [...], "log": [...]}. A line of the log has further
// keys as far as they are known: line, output, column, row, token, position. An action of a run has
// its time as "seconds", its expressions as "outputs", "blocksRead" and "blocksSkipped" where it
// reads blocks, and the "files" that it has written.
Json jsonOf(const RunResult& result);
// The same of a check: each action has its output pins, [{"columns": [{"name", "meta"}]}] as
// "pins", with null for columns that are not known; and one that computes the names of its new
// columns has them as "newColumns".
Json jsonOfCheck(const RunResult& result);

// One line an action with its rows in and out, a number a pin, and a last line with the time.
std::string rowTable(const RunResult& result);

}  // namespace kelvarin
