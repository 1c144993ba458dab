// What a column that is called otherwise changes in the actions of a graph, found action by action,
// so that a window can show it without keeping its user waiting.
//
// Used by: graph_commands.h, gui/find.
// Threads: the user-interface thread. The graph does not change meanwhile.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class ColumnRename {
 public:
  struct Change {
    ActionId action = kNoId;
    QString elementBefore;  // as the action saves them
    QString element;
  };
  // Whether the rows of the first output pin of an action have the column, as far as is known.
  using HasColumn = std::function<bool(ActionId)>;

  // The action itself, or one above it, makes the column. Where none does, as with the columns of
  // a file, the name is another one from `action` on; with `hasColumn`, from the topmost action on
  // that has the column.
  ColumnRename(EditedGraph& graph, ActionId action, const QString& oldName, const QString& newName,
               HasColumn hasColumn = {});

  // Looks at one more action; false when there is none left.
  bool advance();
  const QString& oldName() const { return m_oldName; }
  // In the order in which rows go through the actions.
  const std::vector<Change>& changes() const { return m_changes; }
  // Whether an action makes the column; else it comes out of what a source reads.
  bool hasMaker() const { return m_hasMaker; }
  // The action from which on the column is called otherwise; after the last advance().
  ActionId origin() const { return m_origin; }
  bool hasVisited(ActionId action) const { return m_seen.contains(action); }

 private:
  void climb();
  void startAt(ActionId origin);
  void openReadersOf(ActionId action);
  void follow(ActionId action);

  EditedGraph& m_graph;
  const QString m_oldName;
  const QString m_newName;
  HasColumn m_hasColumn;
  ActionId m_origin;
  ActionId m_climbing;  // the next one that may make the column; kNoId when that is settled
  bool m_hasReachedTop = false;  // of the actions that have the column
  bool m_hasMaker = false;
  std::deque<ActionId> m_open;
  QSet<ActionId> m_seen;
  std::vector<Change> m_changes;
};

}  // namespace kelvarin
