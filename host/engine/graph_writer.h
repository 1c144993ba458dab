// Saves a graph. What is saved reads back as the same graph, and saving that yields the same bytes.
#pragma once

#include <QByteArray>
#include <QString>

#include "base/result.h"
#include "host/engine/graph.h"

namespace kelvarin {

// Parameters are written as their file gave them, without what a user set for one run.
QByteArray graphDocument(const Graph& graph);
// Replaces `file` as a whole or leaves it as it was.
Status<QString> saveGraph(const Graph& graph, const QString& file);

}  // namespace kelvarin
