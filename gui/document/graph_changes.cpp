#include "gui/document/graph_changes.h"

#include <algorithm>
#include <utility>

#include <QFileInfo>

#include "gui/document/link_rules.h"
#include "host/engine/missing_action.h"

namespace kelvarin {

GraphChanges::GraphChanges(EditedGraph& graph) : m_graph(graph), m_parts(*graph.m_parts) {
  ++m_parts.openChanges;
}

GraphChanges::~GraphChanges() {
  if (m_isReplay) {
    m_parts.isReplaying = false;
  }
  if (--m_parts.openChanges > 0) {
    return;
  }
  if (std::exchange(m_parts.mayRowsDiffer, false)) {
    ++m_parts.version;
    emit m_graph.rowsMayDiffer();
  }
  const bool isModified = m_parts.isModified();
  const bool wasModified = std::exchange(m_parts.wasModified, isModified);
  if (std::exchange(m_parts.hasModifiedChanged, false) || isModified != wasModified) {
    emit m_graph.modifiedChanged();
  }
}

void GraphChanges::beginReplay() {
  m_isReplay = true;
  m_parts.isReplaying = true;
}

int GraphChanges::newId() {
  return EditedGraph::Parts::newId();
}

std::unique_ptr<ActionItem> GraphChanges::newItem(const QString& typeName,
                                                  const QString& element) const {
  const auto node = parseXml(element.toUtf8());
  if (!node || node->name() != typeName) {
    return nullptr;
  }
  const CatalogueEntry* entry = m_parts.catalogue.find(typeName);
  GlobalParameters* settings = m_parts.graph.settings.get();
  return entry == nullptr
             ? std::make_unique<MissingAction>(*node, settings)
             : std::unique_ptr<ActionItem>(entry->prototype->createFromXML(*node, settings));
}

DetachedAction GraphChanges::newAction(const QString& typeName, const QString& name,
                                       QPointF position, const QString& element, bool isDisabled) {
  DetachedAction action;
  const QString text = element.isEmpty() ? QStringLiteral("<%1/>").arg(typeName) : element;
  action.item = newItem(typeName, text);
  if (action.item == nullptr) {
    return action;
  }
  action.id = newId();
  action.record.name = name;
  action.record.typeName = typeName;
  action.record.position = position;
  action.record.hasPosition = true;
  action.record.isDisabled = isDisabled;
  action.record.content = contentOf(*action.item);
  if (!element.isEmpty()) {
    action.record.content.text = element;
    action.record.source = inFile(*action.item, action.record.content);
  }
  action.record.element = elementOf(action.record);
  action.record.whyCannotRun = m_parts.faultOf(action.record.element);
  // Anew, so that the action knows its name.
  action.item = newItem(typeName, action.record.element);
  return action;
}

void GraphChanges::addAction(DetachedAction action) {
  const ActionId id = action.id;
  const auto index = std::ranges::lower_bound(m_parts.order, id) - m_parts.order.begin();
  m_parts.order.insert(m_parts.order.begin() + index, id);
  m_parts.idsOfItems.insert(action.item.get(), id);
  m_parts.addName(id, action.record.name);
  m_parts.graph.actions.insert(
      m_parts.graph.actions.begin() + index,
      {action.record.name, {}, std::move(action.item), action.record.isDisabled});
  m_parts.records.insert_or_assign(id, std::move(action.record));
  m_parts.hasLinksOfGraph = false;
  m_parts.compareAction(id);
  noteRowsChange();
  emit m_graph.actionAdded(id);
  judgeRivalsOf(id);
  resolveAbsentEnds();
}

DetachedAction GraphChanges::removeAction(ActionId id) {
  emit m_graph.actionAboutToBeRemoved(id);
  const auto index = m_parts.indexOf(id);
  DetachedAction action{id, std::move(m_parts.records.at(id)),
                        std::move(m_parts.graphAction(id).item)};
  m_parts.order.erase(m_parts.order.begin() + index);
  m_parts.graph.actions.erase(m_parts.graph.actions.begin() + index);
  m_parts.records.erase(id);
  m_parts.idsOfItems.remove(action.item.get());
  m_parts.removeName(id, action.record.name);
  m_parts.linksOfActions.remove(id);
  m_parts.hasLinksOfGraph = false;
  m_parts.compareAction(id);
  noteRowsChange();
  emit m_graph.actionRemoved(id);
  judgeActionsCalled(action.record.name);
  resolveAbsentEnds();
  return action;
}

void GraphChanges::noteActionChange(ActionId id) {
  ActionRecord& record = m_parts.records.at(id);
  record.element = elementOf(record);
  m_parts.compareAction(id);
}

// An editor that goes may report what was typed last: before anything changes.
void GraphChanges::announceReplacement(ActionId id) {
  emit m_graph.actionAboutToBeReplaced(id);
}

void GraphChanges::replaceItem(ActionId id, std::unique_ptr<ActionItem> item) {
  GraphAction& action = m_parts.graphAction(id);
  m_parts.idsOfItems.remove(action.item.get());
  m_parts.idsOfItems.insert(item.get(), id);
  action.item = std::move(item);
}

void GraphChanges::rename(ActionId id, const QString& name) {
  announceReplacement(id);
  ActionRecord& record = m_parts.records.at(id);
  const QString before = std::exchange(record.name, name);
  m_parts.removeName(id, before);
  m_parts.addName(id, name);
  noteActionChange(id);
  replaceItem(id, newItem(record.typeName, record.element));
  m_parts.graphAction(id).name = name;
  noteRowsChange();
  judgeAction(id);
  emit m_graph.actionChanged(id, true);
  judgeActionsCalled(before);
  resolveAbsentEnds();
}

void GraphChanges::setDisabled(ActionId id, bool isDisabled) {
  announceReplacement(id);
  ActionRecord& record = m_parts.records.at(id);
  record.isDisabled = isDisabled;
  noteActionChange(id);
  replaceItem(id, newItem(record.typeName, record.element));
  m_parts.graphAction(id).isDisabled = isDisabled;
  noteRowsChange();
  emit m_graph.actionChanged(id, true);
}

void GraphChanges::move(ActionId id, QPointF position, bool hasPosition) {
  ActionRecord& record = m_parts.records.at(id);
  record.position = position;
  record.hasPosition = hasPosition;
  noteActionChange(id);
  emit m_graph.actionMoved(id);
}

void GraphChanges::restoreContent(ActionId id, const QString& typeName,
                                  const ActionContent& content) {
  announceReplacement(id);
  ActionRecord& record = m_parts.records.at(id);
  record.typeName = typeName;
  record.content = content;
  noteActionChange(id);
  replaceItem(id, newItem(typeName, record.element));
  noteContentChange(id, true);
}

bool GraphChanges::setContent(ActionId id, const QString& typeName, const QString& element) {
  const std::unique_ptr<ActionItem> item = newItem(typeName, element);
  if (item == nullptr) {
    return false;
  }
  restoreContent(id, typeName, newContent(id, typeName, contentOf(*item)));
  return true;
}

// An action that is made of what is kept must be the one that was asked for.
ActionContent GraphChanges::newContent(ActionId id, const QString& typeName,
                                       const ActionContent& now) const {
  ActionContent content = keptContent(m_parts.records.at(id).source, now);
  const std::unique_ptr<ActionItem> item = newItem(typeName, content.text);
  if (item == nullptr || contentOf(*item).settings != now.settings) {
    return now;
  }
  // A value that the action cannot use goes when the action is edited.
  const bool isMended =
      !m_parts.faultOf(content.text).isEmpty() && m_parts.faultOf(now.text).isEmpty();
  return isMended ? now : content;
}

ActionContent GraphChanges::takeEdit(ActionId id) {
  ActionRecord& record = m_parts.records.at(id);
  ActionContent before = record.content;
  const ActionContent now = contentOf(m_parts.item(id));
  if (before.settings == now.settings) {
    return before;
  }
  record.content = newContent(id, record.typeName, now);
  noteActionChange(id);
  noteContentChange(id, false);
  return before;
}

void GraphChanges::noteContentChange(ActionId id, bool isReplaced) {
  noteRowsChange();
  judgeAction(id);
  emit m_graph.actionChanged(id, isReplaced);
  judgeLinksOf(id);
}

void GraphChanges::judgeAction(ActionId id) {
  ActionRecord& record = m_parts.records.at(id);
  record.whyCannotRun = m_parts.whyCannotRun(id);
}

// Another one may have had the same name, or has it now.
void GraphChanges::judgeRivalsOf(ActionId id) {
  const QString name = m_parts.records.at(id).name;
  if (m_parts.idsOfNames.value(name).size() > 1) {
    judgeActionsCalled(name);
  }
}

void GraphChanges::judgeActionsCalled(const QString& name) {
  for (const ActionId id : m_parts.idsOfNames.value(name)) {
    const QString before = m_parts.records.at(id).whyCannotRun;
    judgeAction(id);
    if (m_parts.records.at(id).whyCannotRun != before) {
      emit m_graph.actionChanged(id, false);
    }
  }
}

void GraphChanges::addLink(const LinkRecord& link) {
  const LinkId id = link.drawn.id;
  m_parts.links.insert_or_assign(id, link);
  if (!link.absentFrom.isNull() || !link.absentTo.isNull()) {
    m_parts.linksWithAbsentEnds.insert(id);
  }
  addToEnds(link.drawn);
  m_parts.compareLink(id);
  emit m_graph.linkAdded(id);
  noteLinkChange(link.drawn);
}

LinkRecord GraphChanges::removeLink(LinkId id) {
  const LinkRecord link = m_parts.links.at(id);
  m_parts.links.erase(id);
  m_parts.linksWithAbsentEnds.remove(id);
  removeFromEnds(link.drawn);
  m_parts.compareLink(id);
  emit m_graph.linkRemoved(id);
  noteLinkChange(link.drawn);
  return link;
}

void GraphChanges::addToEnds(const DrawnLink& link) {
  for (const ActionId end : {link.from, link.to}) {
    if (end != kNoId && !m_parts.linksOfActions[end].contains(link.id)) {
      m_parts.linksOfActions[end].append(link.id);
    }
  }
}

void GraphChanges::removeFromEnds(const DrawnLink& link) {
  for (const ActionId end : {link.from, link.to}) {
    if (end != kNoId) {
      m_parts.linksOfActions[end].removeOne(link.id);
    }
  }
}

void GraphChanges::noteLinkChange(const DrawnLink& link) {
  m_parts.hasLinksOfGraph = false;
  noteRowsChange();
  judgeLinksInto(link.to, link.toPin);
}

void GraphChanges::judgeLinksOf(ActionId id) {
  for (const LinkId each : m_parts.linksOfActions.value(id)) {
    const DrawnLink& link = m_parts.links.at(each).drawn;
    judgeLinksInto(link.to, link.toPin);
  }
}

// The first one that can be used is whole, the others are broken.
void GraphChanges::judgeLinksInto(ActionId id, int pin) {
  QList<LinkId> rivals = m_parts.linksOfActions.value(id);
  std::ranges::sort(rivals);
  ActionId taker = kNoId;
  for (const LinkId each : rivals) {
    LinkRecord& link = m_parts.links.at(each);
    if (link.drawn.to != id || link.drawn.toPin != pin) {
      continue;
    }
    QString why = m_parts.whyEndsAreBroken(link);
    if (why.isEmpty() && taker != kNoId) {
      why = LinkRules::pinIsTaken(m_parts.nameOf(id), pin, m_parts.nameOf(taker));
    }
    const bool wasBroken = !link.drawn.whyBroken.isEmpty();
    if (why.isEmpty() && wasBroken && m_parts.leadsTo(link.drawn.to, link.drawn.from)) {
      why = LinkRules::closesCycle(m_parts.nameOf(link.drawn.from), m_parts.nameOf(id));
    }
    if (why.isEmpty()) {
      taker = link.drawn.from;
    }
    if (std::exchange(link.drawn.whyBroken, why) != why) {
      m_parts.hasLinksOfGraph = false;
      noteRowsChange();
      emit m_graph.linkChanged(each);
    }
  }
}

void GraphChanges::resolveAbsentEnds() {
  for (const LinkId id : QSet<LinkId>(m_parts.linksWithAbsentEnds)) {
    LinkRecord& link = m_parts.links.at(id);
    DrawnLink resolved = link.drawn;
    if (!link.absentFrom.isNull()) {
      resolved.from = m_parts.idOf(link.absentFrom);
    }
    if (!link.absentTo.isNull()) {
      resolved.to = m_parts.idOf(link.absentTo);
    }
    if (resolved.from == link.drawn.from && resolved.to == link.drawn.to) {
      continue;
    }
    const DrawnLink before = std::exchange(link.drawn, resolved);
    removeFromEnds(before);
    addToEnds(resolved);
    emit m_graph.linkChanged(id);
    noteLinkChange(before);
    noteLinkChange(resolved);
  }
}

void GraphChanges::addNote(const DrawnNote& note) {
  m_parts.notes.insert_or_assign(note.id, note);
  m_parts.compareNote(note.id);
  emit m_graph.noteAdded(note.id);
}

DrawnNote GraphChanges::removeNote(NoteId id) {
  const DrawnNote note = m_parts.notes.at(id);
  m_parts.notes.erase(id);
  m_parts.compareNote(id);
  emit m_graph.noteRemoved(id);
  return note;
}

void GraphChanges::setNote(const DrawnNote& note) {
  m_parts.notes.at(note.id) = note;
  m_parts.compareNote(note.id);
  emit m_graph.noteChanged(note.id);
}

void GraphChanges::setParameters(const QList<DrawnParameter>& parameters) {
  m_parts.parameters = parameters;
  m_parts.takeParameters();
  m_parts.compareParameters();
  noteRowsChange();
  for (const auto& [id, record] : m_parts.records) {
    if (record.element.contains(QStringLiteral("${"))) {
      judgeActionsCalled(record.name);
    }
  }
  emit m_graph.parametersChanged();
}

void GraphChanges::setFile(const QString& file) {
  m_parts.graph.file = file;
  m_parts.graph.settings->setGraphFile(QFileInfo(file).absoluteFilePath());
  m_parts.graph.settings->setWorkingDir(QFileInfo(file).absolutePath());
  noteRowsChange();
}

}  // namespace kelvarin
