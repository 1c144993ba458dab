// What an EditedGraph consists of inside, and the primitive changes that commands are made of.
//
// Ids grow along the document, so the order of ids is the order of the document, and what an undo
// brings back comes to where it was.
// Used by: edited_graph*.cpp, graph_changes.cpp.
// Threads: the user-interface thread.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "gui/document/edited_graph.h"
#include "host/engine/action_catalogue.h"

namespace kelvarin {

// What an action's element says beside its name, its position and whether it is disabled.
struct ActionContent {
  // The element as a file gets it; those attributes in it may be older ones.
  QString text;
  // What the action itself saves, without those attributes.
  QString settings;
  bool operator==(const ActionContent&) const = default;
};

struct ActionRecord {
  QString name;
  QString typeName;
  QPointF position;
  bool hasPosition = false;
  QPointF sourcePosition;  // as the file had it
  bool isDisabled = false;
  QString whyCannotRun;
  ActionContent source;  // as the file had it; empty texts for an action that is not from there
  ActionContent content;
  QString element;  // as it is saved now
};

struct LinkRecord {
  DrawnLink drawn;
  // Of ends that no action of the graph has; else empty.
  QString absentFrom;
  QString absentTo;
};

// An action outside the graph, as a deletion keeps it for its undo.
struct DetachedAction {
  ActionId id = kNoId;
  ActionRecord record;
  std::unique_ptr<ActionItem> item;
};

// What a file has, to be compared with the graph.
struct SavedGraph {
  QHash<ActionId, QString> elements;
  QSet<LinkId> links;
  QHash<NoteId, DrawnNote> notes;
  QList<DrawnParameter> parameters;
  bool isOther = false;  // the file has something that has no counterpart in the graph
};

class EditedGraph::Parts {
 public:
  explicit Parts(const ActionCatalogue& ofActions) : catalogue(ofActions) {}

  int indexOf(ActionId id) const;  // -1 when absent
  GraphAction& graphAction(ActionId id);
  ActionItem& item(ActionId id) { return *graphAction(id).item; }
  ActionId idOf(const QString& name) const;
  QString nameOf(ActionId id) const;  // empty when absent
  void addName(ActionId id, const QString& name);
  void removeName(ActionId id, const QString& name);
  void makeLinksOfGraph();
  SavedGraph now() const;
  // Compares one part with the file.
  void compareAction(ActionId id);
  void compareLink(LinkId id);
  void compareNote(NoteId id);
  void compareParameters();
  void compareAll();
  bool isModified() const;
  // Whether rows from `from` come to `to` along whole links.
  bool leadsTo(ActionId from, ActionId to) const;
  // Empty when both pins are there.
  QString whyEndsAreBroken(const LinkRecord& link);
  // Puts the parameters into the graph, with those of the session over them.
  void takeParameters();
  // The file's name and folder are known to the actions.
  void takeFolders();
  // For load().
  void take(OpenedGraph opened);
  void takeNotes(const QByteArray& document);

  const ActionCatalogue& catalogue;
  Graph graph;  // its links are made when they are asked for
  bool hasLinksOfGraph = false;
  std::vector<ActionId> order;  // of graph.actions; ascending
  std::map<ActionId, ActionRecord> records;
  QHash<const ActionItem*, ActionId> idsOfItems;
  QHash<QString, QList<ActionId>> idsOfNames;
  std::map<LinkId, LinkRecord> links;
  QHash<ActionId, QList<LinkId>> linksOfActions;
  QSet<LinkId> linksWithAbsentEnds;
  std::map<NoteId, DrawnNote> notes;
  QList<DrawnParameter> parameters;
  std::vector<GraphError> faults;
  std::vector<ParameterOverride> overrides;

  SavedGraph saved;
  QSet<ActionId> modifiedActions;
  QSet<LinkId> modifiedLinks;
  QSet<NoteId> modifiedNotes;
  bool areParametersModified = false;
  // Documents that were made lately, and what they were made of.
  std::vector<std::pair<QByteArray, SavedGraph>> snapshots;

  int nextId = 0;
  quint64 version = 1;
  int openChanges = 0;  // GraphChanges that live
  bool mayRowsDiffer = false;
  bool wasModified = false;
  bool hasModifiedChanged = false;  // of an action

 private:
  void takeAction(const GraphAction& action, const QString& whyCannotRun);
  void takeLink(const LinkInFile& inFile);
  void breakCycles();

  QHash<std::pair<ActionId, int>, ActionId> m_takers;  // of input pins, while a graph is loaded
};

// The element with the record's name, position and whether it is disabled.
QString elementOf(const ActionRecord& record);
// As the action itself saves it.
ActionContent contentOf(ActionItem& item);
bool isOn(const QString& flag);

}  // namespace kelvarin
