// What `kelvarin actions NAME` shows about an action: its attributes and elements, as text and as
// JSON.
#pragma once

#include <string>

#include "cli/value_json.h"
#include "host/engine/action_catalogue.h"

namespace kelvarin {

std::string actionPage(const CatalogueEntry& entry);
// The entry of the catalogue, with "attributes" and "children" where the action declares them.
Json actionJson(const CatalogueEntry& entry);

}  // namespace kelvarin
