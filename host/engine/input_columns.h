// The columns that reach a pin, for the editor of an action that is not running.
//
// Used by: pin_rows_request.cpp, tests.
// Threads: the caller's becomes the engine thread; the graph is not changed or run meanwhile.
#pragma once

#include "host/contract/pin_columns.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph.h"

namespace kelvarin {

// Known when all actions upstream of the pin can say their columns, which they do as in a check: no
// row is read but those of variable tables and those from which types are inferred. Nothing is
// logged; the first error upstream is the reason why the columns are not known.
PinColumns columnsOfInputPin(const Graph& graph, const ActionItem& action, int pin,
                             const ExecutionOptions& options = {});

// What an output pin announces in such a check, on a stack that is deep enough; errors are in the
// log of the session. `stopSwitch` ends it.
PinColumns announcedColumns(const Graph& graph, int action, int outputPin, RunRecord& stopSwitch,
                            const ExecutionOptions& options);

}  // namespace kelvarin
