// What an EditedGraph consists of inside, and the primitive changes that commands are made of.
//
// Ids grow along the document, so the order of ids is the order of the document, and what an undo
// brings back comes to where it was.
// Used by: edited_graph*.cpp, graph_changes.h, graph_text.h.
// Threads: the user-interface thread, once a graph is shown.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "gui/document/edited_graph.h"
#include "gui/document/graph_source.h"
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

// What the file had; without texts for an action that is not from there.
struct ActionInFile {
  ActionContent content;
  QPointF position;
  bool isDisabled = false;
  // The line break and the indentation in front of the element.
  QString lineStart = QStringLiteral("\n");
};

struct ActionRecord {
  QString name;
  QString typeName;
  QPointF position;
  bool hasPosition = false;
  bool isDisabled = false;
  QString whyCannotRun;
  ActionContent content;
  ActionInFile source;
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
  bool isOther = false;  // the file has another document than this graph ever had
};

class EditedGraph::Parts {
 public:
  explicit Parts(const ActionCatalogue& ofActions) : catalogue(ofActions) {}

  // No two parts of any graph of this process have the same, so that none of a graph that went is
  // taken for one of the next.
  static int newId();
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
  // Empty for an action that can; its name is one of the reasons.
  QString whyCannotRun(ActionId id);
  // What a reader of graph files has against an action's element, its name aside; else empty.
  QString faultOf(const QString& element) const;
  // Puts the parameters into the graph, with those of the session over them.
  void takeParameters();
  // For load().
  void take(const QByteArray& document, OpenedGraph opened);

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
  QHash<NoteId, DrawnNote> notesInSource;
  QList<DrawnParameter> parameters;
  std::vector<GraphError> faults;
  std::vector<ParameterOverride> overrides;

  std::optional<GraphSource> source;
  QHash<int, int> childrenOfSource;  // of each id that is from there, its index in its section

  SavedGraph saved;
  QSet<ActionId> modifiedActions;
  QSet<LinkId> modifiedLinks;
  QSet<NoteId> modifiedNotes;
  bool areParametersModified = false;
  // Documents that were made lately, and what they were made of.
  std::vector<std::pair<QByteArray, SavedGraph>> snapshots;

  quint64 version = 1;
  int openChanges = 0;  // GraphChanges that live
  bool isReplaying = false;
  bool mayRowsDiffer = false;
  bool wasModified = false;
  bool hasModifiedChanged = false;  // of an action

 private:
  void takeAction(const GraphAction& action, const QString& whyCannotRun, int child);
  void takeLink(const LinkInFile& inFile, int child);
  void takeNote(const GraphNote& inFile, int child);
  void breakCycles();

  QHash<std::pair<ActionId, int>, ActionId> m_takers;  // of input pins, while a graph is loaded
};

// The element with the record's name, position and whether it is disabled.
QString elementOf(const ActionRecord& record);
// As the action itself saves it.
ActionContent contentOf(ActionItem& item);
// What an action has from its element, of which `content` is known.
ActionInFile inFile(const ActionItem& item, const ActionContent& content);
// What a file gets for an action that saves `now`: as much as can be of what it had.
ActionContent keptContent(const ActionInFile& source, const ActionContent& now);

}  // namespace kelvarin
