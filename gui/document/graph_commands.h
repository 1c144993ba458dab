// Everything that a user does to a graph, each as one step of undo with a text ("Rename 'late?'").
//
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QPointF>
#include <QUndoStack>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class ColumnRename;
struct EditOfAction;

class GraphCommands : public QObject {
  Q_OBJECT

 public:
  // The graph outlives its commands. Loading a graph empties the stack.
  explicit GraphCommands(EditedGraph& graph, QObject* parent = nullptr);
  ~GraphCommands() override;

  QUndoStack& stack() { return m_stack; }
  EditedGraph& graph() { return m_graph; }

  // Several commands as one step, with this text.
  void together(const QString& text, const std::function<void()>& commands);

  // kNoId when nobody offers the type. `element` is the XML of its settings, empty for those of a
  // new action.
  ActionId addAction(const QString& typeName, QPointF position, const QString& name = {},
                     const QByteArray& element = {});
  // Added and linked to the first pins that fit, at the next free position at the right of `pin`
  // (or left of it for an input pin).
  ActionId addLinked(const QString& typeName, const PinRef& pin, const QByteArray& element = {});
  // In between, on the first pins that fit; what is behind the link moves to the right where
  // there is no space. kNoId for a broken link.
  ActionId insertIntoLink(const QString& typeName, LinkId link);
  // An action that is there, without links, is put in between.
  bool moveIntoLink(ActionId action, LinkId link);
  // Keeps links and the settings that the other type has as well.
  bool replaceAction(ActionId action, const QString& typeName);
  // False with nothing done when the graph has an action of this name, or it is empty.
  bool rename(ActionId action, const QString& name);
  void setDisabled(const QSet<ActionId>& actions, bool isDisabled);
  // Whole positions after the move; consecutive moves of the same actions are one step while
  // `isDragging`.
  void moveActions(const QHash<ActionId, QPointF>& positions, const QHash<NoteId, QPointF>& notes,
                   bool isDragging = false);

  // An editor has changed the action in place: the step back is its XML of before. Changes that
  // follow closely in the same field are one step.
  void noteEdit(ActionId action, const EditorPosition& position = {});
  // The action made anew of `element`, for editors that hold an element and no action.
  bool setElement(ActionId action, const QByteArray& element, const EditorPosition& position = {});

  LinkId addLink(ActionId from, int fromPin, ActionId to, int toPin);
  NoteId addNote(const QRectF& rectangle, const QString& text = {}, const QColor& colour = {});
  void setNote(NoteId note, const QRectF& rectangle, const QString& text, const QColor& colour);
  // `newNames` are by the old ones: settings and expressions of all actions follow.
  void setParameters(const QList<DrawnParameter>& parameters,
                     const QHash<QString, QString>& newNames = {});

  void remove(const GraphSelection& selection);
  // What the deleted actions read from is linked to what read from them.
  void removeClosingGaps(const GraphSelection& selection);

  // A piece of the graph as XML: a whole graph document of these actions, their links and notes.
  QByteArray copy(const GraphSelection& selection) const;
  // What was pasted, empty where `document` is no graph; names are made unique. Documents over
  // 16 MiB are refused. `reason` says why nothing was pasted.
  GraphSelection paste(const QByteArray& document, QPointF position, QString* reason = nullptr);
  GraphSelection duplicate(const GraphSelection& selection);

  // A column of `action`'s output is called otherwise from now on: the settings and expressions of
  // all actions that read it follow. Returns the actions that were changed.
  QList<ActionId> renameColumn(ActionId action, const QString& oldName, const QString& newName);
  // What was found for the graph as it is now.
  QList<ActionId> renameColumn(ColumnRename& rename);

 signals:
  // An undo or redo brought another content of this action: its editor is to be shown there.
  void editorPositionWanted(kelvarin::ActionId action, const kelvarin::EditorPosition& position);

 private:
  class Step;  // command_step.h

  void describeEdit(Step& step, const QString& settingsBefore, const EditOfAction& edit);
  void followParameters(Step& step, ActionId action, const QHash<QString, QString>& newNames);
  ActionId pasteAction(const EditedGraph& piece, ActionId id, QPointF offset);

  EditedGraph& m_graph;
  Step* m_step = nullptr;  // the command under way
  QUndoStack m_stack;
};

}  // namespace kelvarin
