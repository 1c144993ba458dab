// What the rows of an action depend on: its settings and what is linked to it, without its name and
// its position on the canvas.
//
// Used by: the run, to know which actions would give other rows than in it; the preview, to know
// whether its rows are still true.
// Threads: the user-interface thread.
#pragma once

#include <map>
#include <set>
#include <tuple>

#include "gui/document/edited_graph.h"

namespace kelvarin {

struct ActionDependencies {
  QByteArray settings;
  std::set<std::tuple<ActionId, int, int>> inputs;  // action, its pin, input pin
  bool operator==(const ActionDependencies&) const = default;
};

ActionDependencies dependenciesOf(const EditedGraph& graph, ActionId action);

// Of an action and all that feed it along whole links.
struct BranchDependencies {
  std::map<ActionId, ActionDependencies> actions;
  QList<DrawnParameter> parameters;
  QString file;  // relative paths start in its folder
  bool operator==(const BranchDependencies&) const = default;
};

BranchDependencies dependenciesOfBranch(const EditedGraph& graph, ActionId lastAction);

// An action's element without its name and its position.
QByteArray settingsOf(const QByteArray& element);

}  // namespace kelvarin
