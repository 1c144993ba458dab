// The primitive changes of an EditedGraph that commands are made of.
//
// While one lives, rowsMayDiffer() and modifiedChanged() wait, so that each comes once a command.
// Used by: edited_graph.cpp, graph_steps.cpp, graph_commands.cpp.
// Threads: the user-interface thread.
#pragma once

#include "gui/document/edited_graph_parts.h"

namespace kelvarin {

class GraphChanges {
 public:
  explicit GraphChanges(EditedGraph& graph);
  ~GraphChanges();
  GraphChanges(const GraphChanges&) = delete;
  GraphChanges& operator=(const GraphChanges&) = delete;

  // Until this object goes, steps are taken back or made again: editors that go with their actions
  // have nothing to say.
  void beginReplay();
  bool isReplaying() const { return m_parts.isReplaying; }
  int newId();
  // Null when the element cannot be read or is of another type than `typeName`.
  std::unique_ptr<ActionItem> newItem(const QString& typeName, const QString& element) const;
  // An action that is not in the graph yet.
  DetachedAction newAction(const QString& typeName, const QString& name, QPointF position,
                           const QString& element, bool isDisabled = false);
  const ActionRecord& record(ActionId id) const { return m_parts.records.at(id); }
  const LinkRecord& link(LinkId id) const { return m_parts.links.at(id); }
  const DrawnNote& note(NoteId id) const { return m_parts.notes.at(id); }
  const QList<DrawnParameter>& parameters() const { return m_parts.parameters; }

  void addAction(DetachedAction action);
  // Its links must have gone before.
  DetachedAction removeAction(ActionId id);
  void rename(ActionId id, const QString& name);
  void setDisabled(ActionId id, bool isDisabled);
  void move(ActionId id, QPointF position, bool hasPosition);
  // Makes the action anew. `content` was this action's before.
  void restoreContent(ActionId id, const QString& typeName, const ActionContent& content);
  // Of another type, or with other settings; false when the element cannot be used.
  bool setContent(ActionId id, const QString& typeName, const QString& element);
  // An editor has changed the action in place. Returns what it was before.
  ActionContent takeEdit(ActionId id);

  void addLink(const LinkRecord& link);
  LinkRecord removeLink(LinkId id);
  void addNote(const DrawnNote& note);
  DrawnNote removeNote(NoteId id);
  void setNote(const DrawnNote& note);
  void setParameters(const QList<DrawnParameter>& parameters);
  // Relative paths begin at its folder.
  void setFile(const QString& file);

 private:
  ActionContent newContent(ActionId id, const QString& typeName, const ActionContent& now) const;
  void announceReplacement(ActionId id);
  void replaceItem(ActionId id, std::unique_ptr<ActionItem> item);
  void noteActionChange(ActionId id);
  void noteContentChange(ActionId id, bool isReplaced);
  void judgeAction(ActionId id);
  void judgeActionsCalled(const QString& name);
  void judgeRivalsOf(ActionId id);
  void addToEnds(const DrawnLink& link);
  void removeFromEnds(const DrawnLink& link);
  void noteLinkChange(const DrawnLink& link);
  void judgeLinksOf(ActionId id);
  void judgeLinksInto(ActionId id, int pin);
  // Ends that are names in the file which no action has, or had.
  void resolveAbsentEnds();
  void noteRowsChange() { m_parts.mayRowsDiffer = true; }

  EditedGraph& m_graph;
  EditedGraph::Parts& m_parts;
  bool m_isReplay = false;
};

}  // namespace kelvarin
