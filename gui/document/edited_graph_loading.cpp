// How an EditedGraph is made of a document.
#include <atomic>
#include <utility>

#include "gui/document/graph_changes.h"
#include "gui/document/graph_text.h"
#include "gui/document/link_rules.h"
#include "gui/document/prepared_graph.h"
#include "host/contract/attribute_table.h"
#include "host/engine/graph_links.h"
#include "host/xml_source/xml_tag.h"

namespace kelvarin {

namespace {

bool hasCoordinates(const XMLNode& node) {
  return node.getAttribute(utf16(u"x")) != nullptr || node.getAttribute(utf16(u"y")) != nullptr;
}

}  // namespace

ActionInFile inFile(const ActionItem& item, const ActionContent& content) {
  double x = 0.0;
  double y = 0.0;
  readAttribute(item.node(), u"x", x, item.globalParameters());
  readAttribute(item.node(), u"y", y, item.globalParameters());
  return {.content = content, .position = {x, y}, .isDisabled = item.isDisabled()};
}

bool EditedGraph::load(const QByteArray& document, const QString& file,
                       const std::vector<ParameterOverride>& settings) {
  return load(PreparedGraph(document, file, m_parts->catalogue, settings));
}

bool EditedGraph::load(PreparedGraph&& prepared) {
  if (!prepared.isGraph()) {
    m_parts->faults = prepared.faults();
    return false;
  }
  // Commands, which are forgotten when the new graph is announced, may hold actions of the old one,
  // which refer to its settings.
  const std::unique_ptr<Parts> old = std::exchange(m_parts, std::move(prepared.m_parts));
  m_parts->version = old->version + 1;
  emit loaded();
  emit rowsMayDiffer();
  emit modifiedChanged();
  return true;
}

int EditedGraph::Parts::newId() {
  static std::atomic<int> next = 0;
  return next++;
}

void EditedGraph::clear() {
  load(newGraphText(), {});
}

void EditedGraph::Parts::take(const QByteArray& document, OpenedGraph opened) {
  source.emplace(document);
  graph = std::move(opened.graph);
  faults = std::move(opened.faults);
  for (const GraphParameter& parameter : graph.parameters) {
    parameters.append({parameter.name, parameter.value});
  }
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    takeAction(graph.actions[i], opened.whyActionCannotRun[i],
               source->elements(GraphSource::actions)[i]);
  }
  for (std::size_t i = 0; i < opened.links.size(); ++i) {
    takeLink(opened.links[i], source->elements(GraphSource::links)[i]);
  }
  for (std::size_t i = 0; i < graph.notes.size(); ++i) {
    takeNote(graph.notes[i], source->elements(GraphSource::notes)[i]);
  }
  breakCycles();
}

void EditedGraph::Parts::takeAction(const GraphAction& action, const QString& whyCannotRun,
                                    int child) {
  const ActionId id = newId();
  ActionItem& item = *action.item;
  ActionRecord record;
  record.name = action.name;
  record.typeName = QString::fromUtf8(item.typeName());
  record.whyCannotRun = whyCannotRun;
  record.content = {.text = source->element(GraphSource::actions, child),
                    .settings = contentOf(item).settings};
  record.source = inFile(item, record.content);
  record.source.lineStart = source->lineStart(GraphSource::actions, child);
  record.position = record.source.position;
  record.hasPosition = hasCoordinates(item.node());
  record.isDisabled = record.source.isDisabled;
  record.element = record.content.text;
  childrenOfSource.insert(id, child);
  order.push_back(id);
  idsOfItems.insert(&item, id);
  idsOfNames[record.name].append(id);
  records.emplace_hint(records.end(), id, std::move(record));
}

void EditedGraph::Parts::takeLink(const LinkInFile& inFile, int child) {
  const LinkId id = newId();
  childrenOfSource.insert(id, child);
  LinkRecord link{
      {id, idOf(inFile.from), inFile.fromPin, idOf(inFile.to), inFile.toPin, {}}, {}, {}};
  if (link.drawn.from == kNoId) {
    link.absentFrom = inFile.from.isNull() ? QStringLiteral("") : inFile.from;
  }
  if (link.drawn.to == kNoId) {
    link.absentTo = inFile.to.isNull() ? QStringLiteral("") : inFile.to;
  }
  if (link.drawn.from == kNoId || link.drawn.to == kNoId) {
    linksWithAbsentEnds.insert(id);
  }
  link.drawn.whyBroken = whyEndsAreBroken(link);
  if (link.drawn.whyBroken.isEmpty()) {
    const ActionId taker = m_takers.value({link.drawn.to, link.drawn.toPin}, kNoId);
    if (taker == kNoId) {
      m_takers.insert({link.drawn.to, link.drawn.toPin}, link.drawn.from);
    } else {
      link.drawn.whyBroken = LinkRules::pinIsTaken(inFile.to, inFile.toPin, nameOf(taker));
    }
  }
  for (const ActionId end : {link.drawn.from, link.drawn.to}) {
    if (end != kNoId && !linksOfActions[end].contains(id)) {
      linksOfActions[end].append(id);
    }
  }
  links.emplace_hint(links.end(), id, std::move(link));
}

void EditedGraph::Parts::takeNote(const GraphNote& inFile, int child) {
  const NoteId id = newId();
  const DrawnNote note{id, QRectF(inFile.x, inFile.y, inFile.width, inFile.height),
                       inFile.colour.isEmpty() ? QColor() : QColor(inFile.colour), inFile.text};
  childrenOfSource.insert(id, child);
  notesInSource.insert(id, note);
  notes.emplace_hint(notes.end(), id, note);
}

// Of each cycle, the link that closes it.
void EditedGraph::Parts::breakCycles() {
  for (;;) {
    makeLinksOfGraph();
    const std::vector<int> cycle = GraphLinks(graph).findCycle();
    if (cycle.empty()) {
      return;
    }
    const ActionId from = order[static_cast<std::size_t>(cycle.back())];
    const ActionId to = order[static_cast<std::size_t>(cycle.front())];
    for (const LinkId id : linksOfActions.value(from)) {
      DrawnLink& link = links.at(id).drawn;
      if (link.from == from && link.to == to && link.whyBroken.isEmpty()) {
        link.whyBroken =
            from == to ? LinkRules::toItself() : LinkRules::closesCycle(nameOf(from), nameOf(to));
      }
    }
  }
}

QString EditedGraph::Parts::whyCannotRun(ActionId id) {
  const ActionRecord& record = records.at(id);
  const QList<ActionId> sameNames = idsOfNames.value(record.name);
  if (record.name.isEmpty() || sameNames.front() != id) {
    return record.name.isEmpty() ? LinkRules::actionWithoutName()
                                 : LinkRules::actionTwice(record.name);
  }
  return faultOf(record.element);
}

QString EditedGraph::Parts::faultOf(const QString& element) const {
  QString document = QStringLiteral("<KelvarinGraph><Parameters>");
  for (const DrawnParameter& parameter : parameters) {
    document += parameterText(parameter);
  }
  XmlTag tag(element);
  tag.set(QStringLiteral("name"), QStringLiteral("action"));
  document += QStringLiteral("</Parameters><Actions>") + tag.textWithRest(element) +
              QStringLiteral("</Actions></KelvarinGraph>");
  const auto opened = openGraph(document.toUtf8(), graph.file, catalogue);
  return opened ? opened->whyActionCannotRun.front() : opened.error().front().message;
}

void EditedGraph::Parts::takeParameters() {
  graph.parameters.clear();
  QMap<QString, QString> given;
  for (const ParameterOverride& each : overrides) {
    given.insert(each.name, each.value);
  }
  GlobalParameters settings;
  settings.setGraphFile(graph.settings->graphFile());
  settings.setWorkingDir(graph.settings->workingDir());
  *graph.settings = settings;
  for (const DrawnParameter& parameter : parameters) {
    graph.parameters.push_back({parameter.name, parameter.value});
    graph.settings->setValue(
        parameter.name,
        given.value(parameter.name, graph.settings->expandString2(parameter.value)));
  }
}

}  // namespace kelvarin
