// How a run of a checked graph evaluates the expressions of its actions.
#pragma once

#include <QString>

#include "host/engine/run_graph.h"

namespace kelvarin {

// A line for each expression: its engine, whether rows come to it by the batch, and what keeps it
// from more. Empty where no action has expressions.
QString evaluationPlan(const RunResult& result);

}  // namespace kelvarin
