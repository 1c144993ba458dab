// Pieces of a graph as XML text: copied, pasted, duplicated; and actions that become others.
#include "gui/document/command_step.h"
#include "gui/document/graph_layout.h"
#include "gui/document/graph_text.h"
#include "host/contract/described_action.h"
#include "host/xml_source/xml_tag.h"

namespace kelvarin {

namespace {

constexpr qsizetype kLargestPaste = 16 * 1024 * 1024;
constexpr QPointF kOffsetOfDuplicate(32, 32);

QPointF topLeftOf(const EditedGraph& graph, const QList<ActionId>& actions,
                  const QList<NoteId>& notes) {
  std::optional<QPointF> corner;
  const auto take = [&corner](QPointF position) {
    corner = corner
                 ? QPointF(std::min(corner->x(), position.x()), std::min(corner->y(), position.y()))
                 : position;
  };
  for (const ActionId id : actions) {
    take(graph.position(id));
  }
  for (const NoteId id : notes) {
    take(graph.note(id).rectangle.topLeft());
  }
  return corner.value_or(QPointF());
}

// The element with another name, and what the other type does not know left out.
QString elementOfOtherType(const QString& element, const QString& typeName,
                           const ActionDescription& description) {
  XmlTag tag(element);
  QString other = u'<' + typeName;
  for (const AttributeDescription& attribute : description.attributes) {
    if (const auto value = tag.value(attribute.name)) {
      other += QStringLiteral(" %1='%2'").arg(attribute.name, withXmlEscapes(*value));
    }
  }
  return other + QStringLiteral("/>");
}

}  // namespace

bool GraphCommands::replaceAction(ActionId action, const QString& typeName) {
  const CatalogueEntry* entry = m_graph.catalogue().find(typeName);
  if (entry == nullptr) {
    return false;
  }
  const ActionDescription* description = descriptionOf(*entry->prototype);
  const QString element =
      elementOfOtherType(QString::fromUtf8(m_graph.element(action)), typeName,
                         description == nullptr ? ActionDescription{} : *description);
  Step step(*this, tr("Replace '%1' by %2").arg(m_graph.name(action), typeName));
  auto change = setContent(step.changes(), action, typeName, element);
  if (change == nullptr) {
    return false;
  }
  step.append(std::move(change));
  return true;
}

QByteArray GraphCommands::copy(const GraphSelection& selection) const {
  return graphText(m_graph, selection);
}

GraphSelection GraphCommands::paste(const QByteArray& document, QPointF position, QString* reason) {
  const auto refuse = [reason](const QString& why) {
    if (reason != nullptr) {
      *reason = why;
    }
    return GraphSelection();
  };
  if (document.size() > kLargestPaste) {
    return refuse(tr("What is in the clipboard has %1 MiB; at most 16 MiB can be pasted.")
                      .arg(document.size() / (1024 * 1024)));
  }
  EditedGraph piece(m_graph.catalogue());
  if (!piece.load(document, m_graph.graph().file)) {
    return refuse(tr("What is in the clipboard is no piece of a graph: %1")
                      .arg(piece.faults().front().message));
  }
  Step step(*this, tr("Paste"));
  const QPointF offset = position - topLeftOf(piece, piece.actions(), piece.notes());
  GraphSelection pasted;
  QHash<ActionId, ActionId> copies;
  for (const ActionId id : piece.actions()) {
    const ActionId copy = pasteAction(piece, id, offset);
    if (copy != kNoId) {
      copies.insert(id, copy);
      pasted.actions.insert(copy);
    }
  }
  for (const LinkId id : piece.links()) {
    const DrawnLink& link = piece.link(id);
    const LinkId copy = addLink(copies.value(link.from, kNoId), link.fromPin,
                                copies.value(link.to, kNoId), link.toPin);
    if (copy != kNoId) {
      pasted.links.insert(copy);
    }
  }
  for (const NoteId id : piece.notes()) {
    const DrawnNote& note = piece.note(id);
    pasted.notes.insert(addNote(note.rectangle.translated(offset), note.text, note.colour));
  }
  return pasted;
}

ActionId GraphCommands::pasteAction(const EditedGraph& piece, ActionId id, QPointF offset) {
  Step step(*this, {});
  const QString wish = piece.name(id).isEmpty() ? piece.typeName(id) : piece.name(id);
  DetachedAction action = step.changes().newAction(
      piece.typeName(id), m_graph.freeName(wish), onGrid(piece.position(id) + offset),
      QString::fromUtf8(piece.element(id)), piece.isDisabled(id));
  if (action.item == nullptr) {
    return kNoId;
  }
  const ActionId copy = action.id;
  step.append(kelvarin::addAction(step.changes(), std::move(action)));
  return copy;
}

GraphSelection GraphCommands::duplicate(const GraphSelection& selection) {
  const Step step(*this, tr("Duplicate"));
  const QPointF corner = topLeftOf(m_graph, inOrder(selection.actions), inOrder(selection.notes));
  return paste(copy(selection), corner + kOffsetOfDuplicate);
}

}  // namespace kelvarin
