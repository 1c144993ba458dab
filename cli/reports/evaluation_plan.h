// How the expressions of a graph's actions are evaluated.
#pragma once

#include <QString>

#include "host/engine/run_graph.h"

namespace kelvarin {

// The engine of an output, whether rows come to it by the batch, and what keeps it from more.
// `all` are the outputs of its action.
QString evaluationOf(const OutputReport& output, const std::vector<OutputReport>& all);

// Of a checked graph, a line for each expression. Empty where no action has expressions.
QString evaluationPlan(const RunResult& result);

}  // namespace kelvarin
