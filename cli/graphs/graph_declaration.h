// What a graph file may hold, as one element with everything inside it: the sections, and the
// actions as they declare themselves.
//
// Used by: element_layout.h, graph_facts.h, graph_schema.h.
#pragma once

#include "host/contract/action_description.h"
#include "host/engine/action_catalogue.h"

namespace kelvarin {

ElementDescription declaredGraph(const ActionCatalogue& catalogue);

// Null for an element that is not declared there, or where `parent` is null.
const ElementDescription* childNamed(const ElementDescription* parent, const QString& name);
const AttributeDescription* attributeNamed(const ElementDescription* element, const QString& name);

}  // namespace kelvarin
