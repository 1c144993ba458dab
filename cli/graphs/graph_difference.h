// How two graphs differ in what they do, whatever their files look like.
#pragma once

#include <QStringList>

#include "cli/graphs/graph_facts.h"

namespace kelvarin {

// One line each, "+" for what is only in `after`, "-" for what is only in `before`, "~" for what is
// in both; lines about the parts of an action are indented below it. Empty where both do the same.
QStringList differenceOf(const GraphFacts& before, const GraphFacts& after);

}  // namespace kelvarin
