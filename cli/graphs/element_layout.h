// The one layout of a graph file: where lines break, how far they are indented, in which order
// attributes stand and how they are quoted.
//
// Comments, blank lines (one at a time), unknown attributes and elements, and the texts of elements
// stay as they are. Laying out twice changes nothing.
#pragma once

#include <QString>

#include "host/contract/action_description.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

// The document was parsed before; its lines end with LF.
QString laidOut(const QString& document, const ElementDescription& graph);

// Whether both mean the same to every reader of graph files.
bool isSameContent(const XMLNode& left, const XMLNode& right, const ElementDescription& graph);

}  // namespace kelvarin
