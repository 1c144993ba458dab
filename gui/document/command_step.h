// One command under way: what it changes becomes one step of undo when it ends. A command within
// another one belongs to the step of the outer one.
//
// Used by: graph_commands*.cpp.
// Threads: the user-interface thread.
#pragma once

#include <algorithm>
#include <memory>

#include "gui/document/graph_commands.h"
#include "gui/document/graph_steps.h"

namespace kelvarin {

class GraphCommands::Step {
 public:
  Step(GraphCommands& commands, const QString& text);
  ~Step();
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;

  // False within another command, whose text and joining are left alone.
  bool isOutermost() const { return m_step != nullptr; }
  GraphChanges& changes() { return m_changes; }
  void append(std::unique_ptr<GraphChange> change) {
    outermost().m_step->append(std::move(change));
  }
  // Of a step of its own: what the step is called when more is known than at its beginning.
  void setText(const QString& text);
  // Where an editor stood; edits with the same key that follow closely are joined.
  void setEdit(const EditOfAction& edit, const QString& key, int longestPauseMilliseconds);
  void setJoining(const GraphStep::Joining& joining) { outermost().m_step->setJoining(joining); }

 private:
  Step& outermost() { return *m_commands.m_step; }

  GraphCommands& m_commands;
  GraphChanges m_changes;
  std::unique_ptr<GraphStep> m_step;  // null within another command
};

// In document order.
template <typename Id>
QList<Id> inOrder(const QSet<Id>& ids) {
  QList<Id> sorted(ids.begin(), ids.end());
  std::ranges::sort(sorted);
  return sorted;
}
template <typename Id, typename Value>
QList<Id> inOrder(const QHash<Id, Value>& values) {
  QList<Id> sorted = values.keys();
  std::ranges::sort(sorted);
  return sorted;
}

}  // namespace kelvarin
