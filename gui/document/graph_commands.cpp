#include "gui/document/graph_commands.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "gui/document/changed_part.h"
#include "gui/document/command_step.h"
#include "gui/document/graph_layout.h"
#include "gui/document/parameter_uses.h"
#include "host/contract/column_user.h"

namespace kelvarin {

namespace {

constexpr int kLongestPause = 2000;  // milliseconds, between edits that are one step

bool isWhole(const EditedGraph& graph, LinkId link) {
  return graph.hasLink(link) && graph.link(link).whyBroken.isEmpty();
}

}  // namespace

GraphCommands::GraphCommands(EditedGraph& graph, QObject* parent)
    : QObject(parent), m_graph(graph) {
  connect(&graph, &EditedGraph::loaded, &m_stack, &QUndoStack::clear);
}

GraphCommands::~GraphCommands() = default;

void GraphCommands::together(const QString& text, const std::function<void()>& commands) {
  const Step step(*this, text);
  commands();
}

ActionId GraphCommands::addAction(const QString& typeName, QPointF position, const QString& name,
                                  const QByteArray& element) {
  if (m_graph.catalogue().find(typeName) == nullptr) {
    return kNoId;
  }
  Step step(*this, tr("Add %1").arg(typeName));
  DetachedAction action =
      step.changes().newAction(typeName, m_graph.freeName(name.isEmpty() ? typeName : name),
                               onGrid(position), QString::fromUtf8(element));
  if (action.item == nullptr) {
    return kNoId;
  }
  const ActionId id = action.id;
  step.append(kelvarin::addAction(step.changes(), std::move(action)));
  return id;
}

ActionId GraphCommands::addLinked(const QString& typeName, const PinRef& pin,
                                  const QByteArray& element) {
  const Step step(*this, tr("Add %1").arg(typeName));
  const ActionId id = addAction(typeName, freePositionBeside(m_graph, pin), {}, element);
  if (id == kNoId) {
    return kNoId;
  }
  if (pin.isOutput && m_graph.pinCount(id, false) > 0) {
    addLink(pin.action, pin.pin, id, 0);
  } else if (!pin.isOutput && m_graph.pinCount(id, true) > 0) {
    addLink(id, 0, pin.action, pin.pin);
  }
  return id;
}

ActionId GraphCommands::insertIntoLink(const QString& typeName, LinkId link) {
  const CatalogueEntry* entry = m_graph.catalogue().find(typeName);
  if (entry == nullptr || entry->pinsIn == 0 || entry->pinsOut == 0 || !isWhole(m_graph, link)) {
    return kNoId;
  }
  const Step step(*this, tr("Insert %1").arg(typeName));
  const DrawnLink before = m_graph.link(link);
  moveActions(positionsWithSpace(m_graph, before), {});
  const QPointF middle = (m_graph.position(before.from) + m_graph.position(before.to)) / 2;
  const ActionId id = addAction(typeName, middle);
  if (id != kNoId) {
    moveIntoLink(id, link);
  }
  return id;
}

bool GraphCommands::moveIntoLink(ActionId action, LinkId link) {
  if (m_graph.pinCount(action, false) == 0 || m_graph.pinCount(action, true) == 0 ||
      !m_graph.linksOf(action).isEmpty() || !isWhole(m_graph, link)) {
    return false;
  }
  Step step(*this, tr("Insert '%1' into a link").arg(m_graph.name(action)));
  const DrawnLink before = m_graph.link(link);
  step.append(removeLink(step.changes(), link));
  addLink(before.from, before.fromPin, action, 0);
  addLink(action, 0, before.to, before.toPin);
  return true;
}

bool GraphCommands::rename(ActionId action, const QString& name) {
  const QString before = m_graph.name(action);
  if (name.isEmpty() || m_graph.idOf(name) != kNoId) {
    return name == before && !name.isEmpty();
  }
  Step step(*this, tr("Rename '%1'").arg(before));
  step.append(kelvarin::rename(step.changes(), action, name));
  return true;
}

void GraphCommands::setDisabled(const QSet<ActionId>& actions, bool isDisabled) {
  const QString name = actions.size() == 1 ? m_graph.name(*actions.begin()) : QString();
  const int count = static_cast<int>(actions.size());
  Step step(*this, isDisabled ? (count == 1 ? tr("Switch '%1' off").arg(name)
                                            : tr("Switch %n action(s) off", nullptr, count))
                              : (count == 1 ? tr("Switch '%1' on").arg(name)
                                            : tr("Switch %n action(s) on", nullptr, count)));
  for (const ActionId id : inOrder(actions)) {
    if (m_graph.isDisabled(id) != isDisabled) {
      step.append(kelvarin::setDisabled(step.changes(), id, isDisabled));
    }
  }
}

void GraphCommands::moveActions(const QHash<ActionId, QPointF>& positions,
                                const QHash<NoteId, QPointF>& notes, bool isDragging) {
  if (positions.isEmpty() && notes.isEmpty()) {
    return;
  }
  Step step(*this, positions.size() == 1 && notes.isEmpty()
                       ? tr("Move '%1'").arg(m_graph.name(inOrder(positions).front()))
                       : tr("Move"));
  QString key = QStringLiteral("move");
  for (const ActionId id : inOrder(positions)) {
    step.append(moveAction(step.changes(), id, onGrid(positions.value(id))));
    key += u' ' + QString::number(id);
  }
  for (const NoteId id : inOrder(notes)) {
    DrawnNote note = m_graph.note(id);
    note.rectangle.moveTopLeft(onGrid(notes.value(id)));
    step.append(kelvarin::setNote(step.changes(), note));
    key += QStringLiteral(" note ") + QString::number(id);
  }
  if (isDragging) {
    step.setJoining({key, kLongestPause});
  }
}

void GraphCommands::noteEdit(ActionId action, const EditorPosition& position) {
  Step step(*this, {});
  if (step.changes().isReplaying()) {
    return;
  }
  const QString before = step.changes().record(action).content.settings;
  if (std::unique_ptr<GraphChange> change = takeEdit(step.changes(), action)) {
    step.append(std::move(change));
    describeEdit(step, before, {action, position});
  }
}

bool GraphCommands::setElement(ActionId action, const QByteArray& element,
                               const EditorPosition& position) {
  Step step(*this, {});
  const ActionContent before = step.changes().record(action).content;
  std::unique_ptr<GraphChange> change =
      setContent(step.changes(), action, m_graph.typeName(action), QString::fromUtf8(element));
  if (change == nullptr) {
    return false;
  }
  if (step.changes().record(action).content != before) {
    step.append(std::move(change));
    if (step.isOutermost()) {
      describeEdit(step, before.settings, {action, position});
    }
  }
  return true;
}

// Edits of the same part in one field that follow each other closely are one step.
void GraphCommands::describeEdit(Step& step, const QString& settingsBefore,
                                 const EditOfAction& edit) {
  const QString name = m_graph.name(edit.action);
  const QString part =
      changedPart(settingsBefore, step.changes().record(edit.action).content.settings);
  const QStringList field{part, edit.position.page, edit.position.field};
  const bool isKnown = !part.isEmpty() || !edit.position.field.isEmpty();
  step.setText(part.isEmpty() ? tr("Change '%1'").arg(name)
                              : tr("Change %1 of '%2'").arg(part, name));
  step.setEdit(
      edit,
      isKnown ? QStringLiteral("edit %1 %2").arg(edit.action).arg(field.join(u'/')) : QString(),
      kLongestPause);
}

LinkId GraphCommands::addLink(ActionId from, int fromPin, ActionId to, int toPin) {
  if (!m_graph.refusal(from, fromPin, to, toPin).isEmpty()) {
    return kNoId;
  }
  Step step(*this, tr("Link '%1' to '%2'").arg(m_graph.name(from), m_graph.name(to)));
  if (const LinkId old = m_graph.linkInto(to, toPin); old != kNoId) {
    const DrawnLink& present = m_graph.link(old);
    if (present.from == from && present.fromPin == fromPin) {
      return old;
    }
    step.append(removeLink(step.changes(), old));
  }
  const LinkId id = step.changes().newId();
  step.append(kelvarin::addLink(step.changes(), {{id, from, fromPin, to, toPin, {}}, {}, {}}));
  return id;
}

NoteId GraphCommands::addNote(const QRectF& rectangle, const QString& text, const QColor& colour) {
  Step step(*this, tr("Add a note"));
  const NoteId id = step.changes().newId();
  step.append(kelvarin::addNote(step.changes(), {id, onGrid(rectangle), colour, text}));
  return id;
}

void GraphCommands::setNote(NoteId note, const QRectF& rectangle, const QString& text,
                            const QColor& colour) {
  const DrawnNote changed{note, onGrid(rectangle), colour, text};
  if (changed == m_graph.note(note)) {
    return;
  }
  Step step(*this, tr("Change a note"));
  step.append(kelvarin::setNote(step.changes(), changed));
}

void GraphCommands::setParameters(const QList<DrawnParameter>& parameters,
                                  const QHash<QString, QString>& newNames) {
  if (parameters == m_graph.parameters()) {
    return;
  }
  Step step(*this, newNames.size() == 1
                       ? tr("Rename parameter '%1'").arg(newNames.constBegin().key())
                       : tr("Change the parameters"));
  step.append(kelvarin::setParameters(step.changes(), parameters));
  if (!newNames.isEmpty()) {
    for (const ActionId id : m_graph.actions()) {
      followParameters(step, id, newNames);
    }
  }
}

// Bare names change all at once, too: two parameters may have exchanged their names.
void GraphCommands::followParameters(Step& step, ActionId action,
                                     const QHash<QString, QString>& newNames) {
  const ActionRecord& record = step.changes().record(action);
  const QString before = record.element;
  QString element = withRenamedParameters(before, newNames);
  const std::unique_ptr<ActionItem> copy = step.changes().newItem(record.typeName, element);
  if (auto* user = dynamic_cast<ColumnUser*>(copy.get())) {
    const QString settings = contentOf(*copy).settings;
    const auto passing = [](int number) { return QStringLiteral("_renamed_%1_").arg(number); };
    int number = 0;
    for (auto name = newNames.begin(); name != newNames.end(); ++name) {
      user->renameParameter(name.key(), passing(number++));
    }
    number = 0;
    for (const QString& name : newNames) {
      user->renameParameter(passing(number++), name);
    }
    if (contentOf(*copy).settings != settings) {
      std::wostringstream saved;
      copy->saveXML(saved, copy->name());
      element = QString::fromStdWString(saved.str());
    }
  }
  if (element != before) {
    if (auto change = setContent(step.changes(), action, record.typeName, element)) {
      step.append(std::move(change));
    }
  }
}

void GraphCommands::remove(const GraphSelection& selection) {
  Step step(*this, removalText(m_graph, selection));
  QSet<LinkId> links = selection.links;
  for (const ActionId id : selection.actions) {
    for (const LinkId link : m_graph.linksOf(id)) {
      links.insert(link);
    }
  }
  for (const LinkId id : inOrder(links)) {
    step.append(removeLink(step.changes(), id));
  }
  for (const ActionId id : inOrder(selection.actions)) {
    step.append(removeAction(step.changes(), id));
  }
  for (const NoteId id : inOrder(selection.notes)) {
    step.append(removeNote(step.changes(), id));
  }
}

void GraphCommands::removeClosingGaps(const GraphSelection& selection) {
  const Step step(*this, removalText(m_graph, selection));
  std::vector<DrawnLink> closing;
  for (const LinkId id : m_graph.links()) {
    const DrawnLink& link = m_graph.link(id);
    const bool isBehind =
        selection.actions.contains(link.from) && !selection.actions.contains(link.to);
    const PinRef source = isBehind ? sourceAbove(m_graph, link.from, selection.actions) : PinRef();
    if (source.action != kNoId && link.whyBroken.isEmpty()) {
      closing.push_back({kNoId, source.action, source.pin, link.to, link.toPin, {}});
    }
  }
  remove(selection);
  for (const DrawnLink& link : closing) {
    addLink(link.from, link.fromPin, link.to, link.toPin);
  }
}

}  // namespace kelvarin
