// The document of a graph whose actions are in a line, each linked to the next.
//
// Used by: cli, for the graphs that commands make themselves; library/runs/graph_text.h.
// Threads: any.
#pragma once

#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "host/engine/graph.h"

namespace kelvarin {

// `elements` are those of the actions, one behind another, `names` theirs in the same order.
QByteArray linearGraph(const QString& elements, const QStringList& names,
                       const std::vector<GraphParameter>& parameters);

}  // namespace kelvarin
