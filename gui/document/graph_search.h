// Finds a text in the names and settings of the actions of a graph, and replaces it.
//
// Used by: the search field of windows. Threads: the user-interface thread.
#pragma once

#include "gui/document/graph_commands.h"

namespace kelvarin {

struct GraphSearch {
  QString text;
  bool isCaseSensitive = false;
  bool isWholeWord = false;  // with no letter, digit or _ beside it
};

struct GraphMatch {
  enum class Kind { name, expression, setting };

  ActionId action = kNoId;
  Kind kind = Kind::setting;
  QString where;  // the attribute or the element: "column", "OutputVar"
  QString text;   // in which it was found
  qsizetype position = 0;
  bool operator==(const GraphMatch&) const = default;
};

// In document order; of each text the first occurrence.
QList<GraphMatch> findInGraph(const EditedGraph& graph, const GraphSearch& search);
// All occurrences, as one step. Names of actions stay unique. Returns the actions that changed.
QList<ActionId> replaceInGraph(GraphCommands& commands, const GraphSearch& search,
                               const QString& replacement);

}  // namespace kelvarin
