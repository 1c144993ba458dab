// What the step debugger says about a row and a run.
//
// Used by its panel and its models.
#pragma once

#include <QString>

#include "ui/debugger/debug_session.h"

namespace kelvarin::debugger_texts {

// For a cell: "step", "breakpoint"; empty for a row that went by.
QString reason(StopReason reason);

// "Row 3, stopped at a breakpoint." `shown`: its index in the history.
QString rowShown(const DebugState& state, std::size_t shown);
// "Running: 812,000 rows, 210,000 a second."
QString running(const DebugState& state);
QString ended(const DebugState& state);

}  // namespace kelvarin::debugger_texts
