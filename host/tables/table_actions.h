// The host's own actions: the sources and sinks of table files, the table in the graph, and the
// sink that only counts.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/action_item.h"

namespace kelvarin {

// One prototype of each, in the order of the catalogue.
std::vector<std::unique_ptr<ActionItem>> makeTableActions();

}  // namespace kelvarin
