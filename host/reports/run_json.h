// What came of a run or a check, for programs.
//
// Used by: `kelvarin run --json` and `check --json`; the library for other languages.
// Threads: any.
#pragma once

#include <string>

#include <QStringList>

#include <nlohmann/json.hpp>

#include "host/engine/run_graph.h"

namespace kelvarin {

// Members keep the order in which they were added.
using Json = nlohmann::ordered_json;

// {"status", "runState", "seconds", "actions": [...], "log": [...]}. A line of the log has further
// keys as far as they are known: line, output, column, row, token, position. An action of a run has
// its time as "seconds", its expressions as "outputs", "blocksRead" and "blocksSkipped" where it
// reads blocks, and the "files" that it has written. Where rejected rows were counted, there are
// "rejectedRows".
Json jsonOf(const RunResult& result);
// The same of a check: each action has its output pins, [{"columns": [{"name", "meta"}]}] as
// "pins", with null for columns that are not known; and one that computes the names of its new
// columns has them as "newColumns".
Json jsonOfCheck(const RunResult& result);

// "ok", "stopped" or "failed".
const char* statusWord(GlobalParameters::RunningState state);

Json jsonOf(const QStringList& texts);

// Two spaces of indentation; text that is not valid Unicode is repaired rather than refused.
std::string printed(const Json& document);

}  // namespace kelvarin
