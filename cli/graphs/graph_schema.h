// The layout of graph files as an XML schema, for editors that complete and check while typing.
#pragma once

#include <QByteArray>

#include "host/contract/action_description.h"

namespace kelvarin {

QByteArray schemaOf(const ElementDescription& graph);

}  // namespace kelvarin
