// What flows in a checked graph: the columns after each action.
#pragma once

#include <QString>

#include "host/engine/run_graph.h"

namespace kelvarin {

// A line for each output pin. A source shows all its columns, other actions those that they add or
// change; of many the first are shown. Empty where nothing is known.
QString columnFlow(const RunResult& result);

}  // namespace kelvarin
