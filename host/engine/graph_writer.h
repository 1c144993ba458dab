// Saves a graph. What is saved reads back as the same graph, and saving that yields the same bytes.
#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

#include "base/result.h"
#include "host/engine/graph.h"

namespace kelvarin {

// Parameters are written as their file gave them, without what a user set for one run.
QByteArray graphDocument(const Graph& graph);
// Of some of its actions, those with a 1, and the links between them.
QByteArray graphDocument(const Graph& graph, const std::vector<char>& isWritten);
// Replaces `file` as a whole or leaves it as it was.
Status<QString> saveGraph(const Graph& graph, const QString& file);
// The same with a document of graphDocument(), so that a thread can do it that does not know the
// graph.
Status<QString> saveGraphDocument(const QByteArray& document, const QString& file);

}  // namespace kelvarin
