// How an EditedGraph is made of a document.
#include <QFileInfo>

#include "gui/document/graph_changes.h"
#include "gui/document/graph_text.h"
#include "gui/document/link_rules.h"
#include "gui/document/xml_tag.h"
#include "host/contract/attribute_table.h"
#include "host/engine/graph_links.h"

namespace kelvarin {

namespace {

// True when the element has the attribute.
bool readCoordinate(const XMLNode& node, const char16_t* name, const GlobalParameters& settings,
                    double& coordinate) {
  readAttribute(node, name, coordinate, &settings);
  return node.getAttribute(utf16(name)) != nullptr;
}

void readPosition(const XMLNode& node, const GlobalParameters& settings, ActionRecord& record) {
  double x = 0.0;
  double y = 0.0;
  const bool hasX = readCoordinate(node, u"x", settings, x);
  const bool hasY = readCoordinate(node, u"y", settings, y);
  record.position = {x, y};
  record.sourcePosition = record.position;
  record.hasPosition = hasX || hasY;
}

}  // namespace

bool EditedGraph::load(const QByteArray& document, const QString& file,
                       const std::vector<ParameterOverride>& settings) {
  auto opened = openGraph(document, file, m_parts->catalogue, settings);
  if (!opened) {
    m_parts->faults = opened.error();
    return false;
  }
  // Commands, which are forgotten when the new graph is announced, may hold actions of the old one,
  // which refer to its settings.
  auto old = std::make_unique<Parts>(m_parts->catalogue);
  std::swap(old, m_parts);
  m_parts->nextId = old->nextId;
  m_parts->version = old->version + 1;
  m_parts->overrides = settings;
  m_parts->take(std::move(*opened));
  m_parts->takeNotes(document);
  m_parts->saved = m_parts->now();
  m_parts->snapshots.emplace_back(document, m_parts->saved);
  emit loaded();
  emit rowsMayDiffer();
  emit modifiedChanged();
  return true;
}

void EditedGraph::clear() {
  load(newGraphText(), {});
}

void EditedGraph::Parts::take(OpenedGraph opened) {
  graph = std::move(opened.graph);
  faults = std::move(opened.faults);
  for (const GraphParameter& parameter : graph.parameters) {
    parameters.append({parameter.name, parameter.value});
  }
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    takeAction(graph.actions[i], opened.whyActionCannotRun[i]);
  }
  for (const LinkInFile& link : opened.links) {
    takeLink(link);
  }
  breakCycles();
}

void EditedGraph::Parts::takeAction(const GraphAction& action, const QString& whyCannotRun) {
  const ActionId id = nextId++;
  ActionItem& item = *action.item;
  ActionRecord record;
  record.name = action.name;
  record.typeName = QString::fromUtf8(item.typeName());
  record.whyCannotRun = whyCannotRun;
  readPosition(item.node(), *graph.settings, record);
  record.isDisabled = isOn(qString(item.node().getAttribute(utf16(u"disabled"))));
  record.content = contentOf(item);
  record.element = elementOf(record);
  order.push_back(id);
  idsOfItems.insert(&item, id);
  idsOfNames[record.name].append(id);
  records.emplace_hint(records.end(), id, std::move(record));
}

void EditedGraph::Parts::takeLink(const LinkInFile& inFile) {
  const LinkId id = nextId++;
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

void EditedGraph::Parts::takeFolders() {
  graph.settings->setGraphFile(QFileInfo(graph.file).absoluteFilePath());
  graph.settings->setWorkingDir(QFileInfo(graph.file).absolutePath());
}

}  // namespace kelvarin
