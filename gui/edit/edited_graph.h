// The graph that is open in a window: its actions as they are edited, and which of them differ from
// the file.
//
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QByteArray>
#include <QObject>

#include "host/engine/graph.h"

namespace kelvarin {

class EditedGraph : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // What a file gets, and what the actions looked like then.
  struct Snapshot {
    QByteArray document;
    std::vector<QByteArray> elements;  // one an action
  };

  // As read from its file. Nothing is changed then.
  void setGraph(Graph graph);
  const Graph& graph() const { return m_graph; }
  int actionCount() const { return static_cast<int>(m_graph.actions.size()); }
  ActionItem& action(int index) { return *m_graph.actions[static_cast<std::size_t>(index)].item; }
  // Counts changes, beginning with 1.
  quint64 version() const { return m_version; }

  // An editor has changed the action in place.
  void noteEdit(int action);
  // Puts a new action made of `element` in the position of the old one, which ceases to exist.
  void replaceAction(int action, const XMLNode& element);

  bool isModified() const { return m_modifiedCount > 0; }
  bool isModified(int action) const { return m_isModified[static_cast<std::size_t>(action)]; }
  Snapshot snapshot() const;
  void markSaved(const Snapshot& snapshot);

 signals:
  // It, or which of its actions differ from the file.
  void changed();

 private:
  void compare(int action);

  Graph m_graph;
  quint64 m_version = 1;
  std::vector<QByteArray> m_savedElements;
  std::vector<bool> m_isModified;
  int m_modifiedCount = 0;
};

}  // namespace kelvarin
