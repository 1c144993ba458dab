#include "gui/document/edited_graph_parts.h"

#include <algorithm>
#include <sstream>

#include <QLocale>

#include "gui/document/xml_patch.h"
#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

// Commands leave whole numbers; files may have others.
QString coordinate(double value) {
  return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

}  // namespace

QString elementOf(const ActionRecord& record) {
  XmlTag tag(record.content.text);
  if (tag.value(u"name").value_or(QString()) != record.name) {
    tag.set(QStringLiteral("name"), record.name);
  }
  const bool hasCoordinate = tag.value(u"x").has_value() || tag.value(u"y").has_value();
  const bool isWhereItWas = record.position == record.source.position && hasCoordinate;
  if (record.hasPosition && !isWhereItWas) {
    tag.set(QStringLiteral("x"), coordinate(record.position.x()));
    tag.set(QStringLiteral("y"), coordinate(record.position.y()));
  }
  if (!record.hasPosition) {
    tag.remove(u"x");
    tag.remove(u"y");
  }
  const bool saysDisabled = tag.value(u"disabled").has_value();
  if (saysDisabled && record.isDisabled == record.source.isDisabled) {
    return tag.textWithRest(record.content.text);
  }
  if (record.isDisabled) {
    tag.set(QStringLiteral("disabled"), QStringLiteral("1"));
  } else {
    tag.remove(u"disabled");
  }
  return tag.textWithRest(record.content.text);
}

ActionContent contentOf(ActionItem& item) {
  std::wostringstream out;
  item.saveXML(out, QString());
  const QString saved = QString::fromStdWString(out.str()).trimmed();
  XmlTag tag(saved);
  for (const QStringView attribute : {u"x", u"y", u"disabled"}) {
    tag.remove(attribute);
  }
  const QString settings = tag.textWithRest(saved);
  return {.text = settings, .settings = settings};
}

ActionContent keptContent(const ActionInFile& source, const ActionContent& now) {
  if (source.content.text.isEmpty()) {
    return now;
  }
  if (now.settings == source.content.settings) {
    return source.content;
  }
  std::optional<QString> text;
  if (XmlTag(source.content.text).name() == XmlTag(now.text).name()) {
    text = patchedElement(source.content.text, source.content.settings, now.settings,
                          source.lineStart);
  }
  return {.text = text ? *text : indented(now.text, source.lineStart), .settings = now.settings};
}

int EditedGraph::Parts::indexOf(ActionId id) const {
  const auto found = std::ranges::lower_bound(order, id);
  return found == order.end() || *found != id ? -1 : static_cast<int>(found - order.begin());
}

GraphAction& EditedGraph::Parts::graphAction(ActionId id) {
  return graph.actions[static_cast<std::size_t>(indexOf(id))];
}

void EditedGraph::Parts::addName(ActionId id, const QString& name) {
  QList<ActionId>& ids = idsOfNames[name];
  ids.insert(std::ranges::lower_bound(ids, id), id);
}

void EditedGraph::Parts::removeName(ActionId id, const QString& name) {
  const auto found = idsOfNames.find(name);
  found->removeOne(id);
  if (found->isEmpty()) {
    idsOfNames.erase(found);
  }
}

ActionId EditedGraph::Parts::idOf(const QString& name) const {
  const auto found = idsOfNames.constFind(name);
  return found == idsOfNames.constEnd() ? kNoId : found->front();
}

QString EditedGraph::Parts::nameOf(ActionId id) const {
  const auto found = records.find(id);
  return found == records.end() ? QString() : found->second.name;
}

void EditedGraph::Parts::makeLinksOfGraph() {
  graph.links.clear();
  for (const auto& [id, link] : links) {
    if (link.drawn.whyBroken.isEmpty()) {
      graph.links.push_back(
          {indexOf(link.drawn.from), link.drawn.fromPin, indexOf(link.drawn.to), link.drawn.toPin});
    }
  }
  hasLinksOfGraph = true;
}

bool EditedGraph::Parts::leadsTo(ActionId from, ActionId to) const {
  QSet<ActionId> seen{from};
  std::vector<ActionId> open{from};
  while (!open.empty()) {
    const ActionId current = open.back();
    open.pop_back();
    if (current == to) {
      return true;
    }
    for (const LinkId id : linksOfActions.value(current)) {
      const DrawnLink& link = links.at(id).drawn;
      if (link.from == current && link.whyBroken.isEmpty() && !seen.contains(link.to)) {
        seen.insert(link.to);
        open.push_back(link.to);
      }
    }
  }
  return false;
}

SavedGraph EditedGraph::Parts::now() const {
  SavedGraph graphNow;
  for (const auto& [id, record] : records) {
    graphNow.elements.insert(id, record.element);
  }
  for (const auto& [id, link] : links) {
    graphNow.links.insert(id);
  }
  for (const auto& [id, note] : notes) {
    graphNow.notes.insert(id, note);
  }
  graphNow.parameters = parameters;
  return graphNow;
}

bool EditedGraph::Parts::isModified() const {
  return saved.isOther || !modifiedActions.isEmpty() || !modifiedLinks.isEmpty() ||
         !modifiedNotes.isEmpty() || areParametersModified;
}

namespace {

// True when it was not there before or is not there any more.
template <typename Id>
bool put(QSet<Id>& ids, Id id, bool isIn) {
  if (isIn == ids.contains(id)) {
    return false;
  }
  if (isIn) {
    ids.insert(id);
  } else {
    ids.remove(id);
  }
  return true;
}

}  // namespace

void EditedGraph::Parts::compareAction(ActionId id) {
  const auto record = records.find(id);
  const auto inFile = saved.elements.constFind(id);
  const bool isInFile = inFile != saved.elements.constEnd();
  const bool isHere = record != records.end();
  const bool isDifferent = isHere != isInFile || (isHere && record->second.element != *inFile);
  hasModifiedChanged = put(modifiedActions, id, isDifferent) || hasModifiedChanged;
}

void EditedGraph::Parts::compareLink(LinkId id) {
  put(modifiedLinks, id, links.contains(id) != saved.links.contains(id));
}

void EditedGraph::Parts::compareNote(NoteId id) {
  const auto note = notes.find(id);
  const auto inFile = saved.notes.constFind(id);
  const bool isInFile = inFile != saved.notes.constEnd();
  const bool isHere = note != notes.end();
  put(modifiedNotes, id, isHere != isInFile || (isHere && note->second != *inFile));
}

void EditedGraph::Parts::compareParameters() {
  areParametersModified = parameters != saved.parameters;
}

void EditedGraph::Parts::compareAll() {
  modifiedActions.clear();
  modifiedLinks.clear();
  modifiedNotes.clear();
  for (const ActionId id : saved.elements.keys()) {
    compareAction(id);
  }
  for (const ActionId id : order) {
    compareAction(id);
  }
  for (const LinkId id : saved.links) {
    compareLink(id);
  }
  for (const auto& [id, link] : links) {
    compareLink(id);
  }
  for (const NoteId id : saved.notes.keys()) {
    compareNote(id);
  }
  for (const auto& [id, note] : notes) {
    compareNote(id);
  }
  compareParameters();
  hasModifiedChanged = true;
}

}  // namespace kelvarin
