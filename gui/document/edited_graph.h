// The graph that is open in a window: its actions as they are edited, links, notes and parameters,
// the text that it was read from, and which parts differ from the file.
//
// It is changed by commands on an undo stack only (graph_commands.h), and by what editors do to
// actions in place, which the window reports. Saving keeps what this program does not know:
// comments, unknown attributes and elements, order, indentation, values spelled as they were; an
// unchanged graph is saved byte for byte. Graphs with faults open: an action whose type nobody
// offers, or that its type refuses, is there as one that cannot run, with its XML kept; a link to
// an absent action or pin is a broken one.
// Threads: the user-interface thread.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QPointF>

#include "gui/document/graph_parts.h"
#include "host/engine/graph.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

class ActionCatalogue;
class PreparedGraph;

class EditedGraph : public QObject {
  Q_OBJECT

 public:
  // The catalogue outlives the graph.
  explicit EditedGraph(const ActionCatalogue& catalogue, QObject* parent = nullptr);
  ~EditedGraph() override;

  // ---- The whole.
  // Reads a document; `file` is its name in messages and the base of relative paths, empty for a
  // new graph. False with the reasons where it is no graph file at all; everything else opens, and
  // what is wrong is in faults(). `settings` are parameters given for this session.
  bool load(const QByteArray& document, const QString& file,
            const std::vector<ParameterOverride>& settings = {});
  // The same of what was made beside this thread.
  bool load(PreparedGraph&& prepared);
  // A new graph without actions and without a file.
  void clear();
  const std::vector<GraphError>& faults() const;
  // What a file gets now.
  QByteArray document() const;
  // It was saved or read under this name; nothing differs from the file any more.
  void markSaved(const QByteArray& document, const QString& file);
  bool isModified() const;
  // Counts changes of anything that rows depend on, beginning with 1: moving actions and editing
  // notes does not count.
  quint64 version() const;
  // For runs, requests for rows, checks: whole actions and whole links, in document order. Actions
  // that cannot run are among them and say so when asked to run.
  const Graph& graph() const;
  const ActionCatalogue& catalogue() const;

  // ---- Actions, in document order.
  QList<ActionId> actions() const;
  int actionCount() const;
  bool hasAction(ActionId id) const;
  ActionItem& action(ActionId id) const;
  ActionId idOf(const ActionItem& item) const;  // kNoId when absent
  ActionId idOf(const QString& name) const;
  int indexOf(ActionId id) const;  // in graph().actions
  QString name(ActionId id) const;
  QString typeName(ActionId id) const;
  QPointF position(ActionId id) const;
  bool hasPosition(ActionId id) const;  // false: the file has none, and it waits to be arranged
  // Where actions without a position are shown until somebody moves them: nothing to save or undo.
  void showAt(const QHash<ActionId, QPointF>& positions);
  bool isDisabled(ActionId id) const;
  QString whyCannotRun(ActionId id) const;  // empty for a good one
  QByteArray element(ActionId id) const;    // as it would be saved
  bool isModified(ActionId id) const;
  // "true", "false", "table of variables" where the action has names; else empty.
  QString pinName(const PinRef& pin) const;
  int pinCount(ActionId id, bool isOutput) const;
  // A name that no action has: the type's or `wish` with the smallest number that makes it unique.
  QString freeName(const QString& wish) const;

  // ---- Links, notes, parameters.
  QList<LinkId> links() const;
  const DrawnLink& link(LinkId id) const;
  bool hasLink(LinkId id) const;
  QList<LinkId> linksOf(ActionId id) const;
  LinkId linkInto(ActionId id, int pin) const;  // kNoId when nothing is linked to the input pin
  // Why no link can be made, for the user; empty when it can. An input pin that is taken is no
  // reason: the new link replaces the old one.
  QString refusal(ActionId from, int fromPin, ActionId to, int toPin) const;
  QList<NoteId> notes() const;
  const DrawnNote& note(NoteId id) const;
  bool hasNote(NoteId id) const;
  QList<DrawnParameter> parameters() const;
  // Actions that use the parameter `${name}`, or its bare name in an expression.
  QList<ActionId> usersOfParameter(const QString& name) const;

 signals:
  // Everything is another one.
  void loaded();
  void actionAdded(kelvarin::ActionId id);
  void actionAboutToBeRemoved(kelvarin::ActionId id);
  void actionRemoved(kelvarin::ActionId id);
  // Name, settings, pins, whether it is disabled or can run. `isReplaced`: the ActionItem is
  // another one, and an editor of the old one must have gone before (actionAboutToBeReplaced).
  void actionAboutToBeReplaced(kelvarin::ActionId id);
  void actionChanged(kelvarin::ActionId id, bool isReplaced);
  void actionMoved(kelvarin::ActionId id);
  void linkAdded(kelvarin::LinkId id);
  void linkChanged(kelvarin::LinkId id);  // it broke, or is whole again
  void linkRemoved(kelvarin::LinkId id);
  void noteAdded(kelvarin::NoteId id);
  void noteChanged(kelvarin::NoteId id);
  void noteRemoved(kelvarin::NoteId id);
  void parametersChanged();
  // version() grew. Once after each command.
  void rowsMayDiffer();
  // isModified(), of it or of an action.
  void modifiedChanged();

 public:
  class Parts;  // edited_graph_parts.h

 private:
  friend class GraphChanges;  // the primitive changes that commands are made of
  friend class PreparedGraph;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
