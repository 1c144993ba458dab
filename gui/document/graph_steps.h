// Steps of undo: the primitive changes of one command, which are made and taken back together.
//
// Used by: graph_commands.cpp.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QElapsedTimer>
#include <QUndoCommand>

#include "gui/document/graph_changes.h"

namespace kelvarin {

// A change that has been made, and can be taken back and made again.
class GraphChange {
 public:
  virtual ~GraphChange() = default;
  virtual void undo(GraphChanges& changes) = 0;
  virtual void redo(GraphChanges& changes) = 0;
  // Takes over what a later change of the same thing leads to; false when it is of another kind.
  virtual bool join(const GraphChange&) { return false; }
};

// An edit of an action's content, which leads back to where its editor stood.
struct EditOfAction {
  ActionId action = kNoId;
  EditorPosition position;
};

class GraphStep final : public QUndoCommand {
 public:
  using ShowPosition = std::function<void(const EditOfAction& edit)>;
  // Steps that follow each other are joined when their keys are equal, and not empty.
  struct Joining {
    QString key;
    int milliseconds = -1;  // the longest time between the two; negative: any
  };

  GraphStep(EditedGraph& graph, ShowPosition show) : m_graph(graph), m_show(std::move(show)) {
    m_sinceLast.start();
  }

  bool isEmpty() const { return m_changes.empty(); }
  void append(std::unique_ptr<GraphChange> change) { m_changes.push_back(std::move(change)); }
  void append(const EditOfAction& edit) { m_edits.push_back(edit); }
  void setJoining(const Joining& joining) { m_joining = joining; }

  void undo() override;
  // The first time, all has been done already.
  void redo() override;
  int id() const override { return m_joining.key.isEmpty() ? -1 : 1; }
  bool mergeWith(const QUndoCommand* later) override;

 private:
  void showPosition() const;

  EditedGraph& m_graph;
  ShowPosition m_show;
  std::vector<std::unique_ptr<GraphChange>> m_changes;
  std::vector<EditOfAction> m_edits;
  Joining m_joining;
  QElapsedTimer m_sinceLast;
  bool m_isDone = true;
};

// The changes there are; each is made by the call.
std::unique_ptr<GraphChange> addAction(GraphChanges& changes, DetachedAction action);
std::unique_ptr<GraphChange> removeAction(GraphChanges& changes, ActionId id);
std::unique_ptr<GraphChange> addLink(GraphChanges& changes, const LinkRecord& link);
std::unique_ptr<GraphChange> removeLink(GraphChanges& changes, LinkId id);
std::unique_ptr<GraphChange> addNote(GraphChanges& changes, const DrawnNote& note);
std::unique_ptr<GraphChange> removeNote(GraphChanges& changes, NoteId id);
std::unique_ptr<GraphChange> setNote(GraphChanges& changes, const DrawnNote& note);
std::unique_ptr<GraphChange> rename(GraphChanges& changes, ActionId id, const QString& name);
std::unique_ptr<GraphChange> setDisabled(GraphChanges& changes, ActionId id, bool isDisabled);
std::unique_ptr<GraphChange> moveAction(GraphChanges& changes, ActionId id, QPointF position);
std::unique_ptr<GraphChange> setParameters(GraphChanges& changes,
                                           const QList<DrawnParameter>& parameters);
// Null when the element cannot be used, or the editor has changed nothing.
std::unique_ptr<GraphChange> setContent(GraphChanges& changes, ActionId id, const QString& typeName,
                                        const QString& element);
std::unique_ptr<GraphChange> takeEdit(GraphChanges& changes, ActionId id);

}  // namespace kelvarin
