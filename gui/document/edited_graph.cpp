#include "gui/document/edited_graph.h"

#include <algorithm>
#include <utility>

#include <QRegularExpression>

#include "gui/document/graph_changes.h"
#include "gui/document/graph_text.h"
#include "gui/document/link_rules.h"
#include "host/contract/column_user.h"
#include "host/contract/named_pins.h"

namespace kelvarin {

EditedGraph::EditedGraph(const ActionCatalogue& catalogue, QObject* parent)
    : QObject(parent), m_parts(std::make_unique<Parts>(catalogue)) {
  const QByteArray document = newGraphText();
  m_parts->take(document, std::move(*openGraph(document, {}, catalogue)));
  m_parts->saved = m_parts->now();
}

EditedGraph::~EditedGraph() = default;

const std::vector<GraphError>& EditedGraph::faults() const {
  return m_parts->faults;
}

QByteArray EditedGraph::document() const {
  constexpr std::size_t kMaxSnapshots = 4;
  QByteArray document = graphText(*m_parts);
  auto& snapshots = m_parts->snapshots;
  if (snapshots.size() == kMaxSnapshots) {
    snapshots.erase(snapshots.begin());
  }
  snapshots.emplace_back(document, m_parts->now());
  return document;
}

void EditedGraph::markSaved(const QByteArray& document, const QString& file) {
  GraphChanges changes(*this);
  if (m_parts->graph.file != file) {
    changes.setFile(file);
  }
  const auto snapshot =
      std::ranges::find(m_parts->snapshots, document, &std::pair<QByteArray, SavedGraph>::first);
  if (snapshot != m_parts->snapshots.end()) {
    m_parts->saved = snapshot->second;
  } else {
    m_parts->saved = m_parts->now();
    m_parts->saved.isOther = document != graphText(*m_parts);
  }
  m_parts->compareAll();
}

bool EditedGraph::isModified() const {
  return m_parts->isModified();
}

quint64 EditedGraph::version() const {
  return m_parts->version;
}

const Graph& EditedGraph::graph() const {
  if (!m_parts->hasLinksOfGraph) {
    m_parts->makeLinksOfGraph();
  }
  return m_parts->graph;
}

const ActionCatalogue& EditedGraph::catalogue() const {
  return m_parts->catalogue;
}

QList<ActionId> EditedGraph::actions() const {
  return {m_parts->order.begin(), m_parts->order.end()};
}

int EditedGraph::actionCount() const {
  return static_cast<int>(m_parts->order.size());
}

bool EditedGraph::hasAction(ActionId id) const {
  return m_parts->records.contains(id);
}

ActionItem& EditedGraph::action(ActionId id) const {
  return m_parts->item(id);
}

ActionId EditedGraph::idOf(const ActionItem& item) const {
  return m_parts->idsOfItems.value(&item, kNoId);
}

ActionId EditedGraph::idOf(const QString& name) const {
  return m_parts->idOf(name);
}

int EditedGraph::indexOf(ActionId id) const {
  return m_parts->indexOf(id);
}

QString EditedGraph::name(ActionId id) const {
  return m_parts->records.at(id).name;
}

QString EditedGraph::typeName(ActionId id) const {
  return m_parts->records.at(id).typeName;
}

QPointF EditedGraph::position(ActionId id) const {
  return m_parts->records.at(id).position;
}

bool EditedGraph::hasPosition(ActionId id) const {
  return m_parts->records.at(id).hasPosition;
}

void EditedGraph::showAt(const QHash<ActionId, QPointF>& positions) {
  for (const auto& [id, position] : positions.asKeyValueRange()) {
    ActionRecord& record = m_parts->records.at(id);
    if (!record.hasPosition) {
      record.position = position;
      emit actionMoved(id);
    }
  }
}

bool EditedGraph::isDisabled(ActionId id) const {
  return m_parts->records.at(id).isDisabled;
}

QString EditedGraph::whyCannotRun(ActionId id) const {
  return m_parts->records.at(id).whyCannotRun;
}

QByteArray EditedGraph::element(ActionId id) const {
  return m_parts->records.at(id).element.toUtf8();
}

bool EditedGraph::isModified(ActionId id) const {
  return m_parts->modifiedActions.contains(id);
}

QString EditedGraph::pinName(const PinRef& pin) const {
  const auto* named = dynamic_cast<const NamedPins*>(&m_parts->item(pin.action));
  return named == nullptr ? QString() : named->pinName(pin.pin, pin.isOutput);
}

int EditedGraph::pinCount(ActionId id, bool isOutput) const {
  const ActionItem& item = m_parts->item(id);
  return isOutput ? item.outputPinCount() : item.inputPinCount();
}

QString EditedGraph::freeName(const QString& wish) const {
  if (!m_parts->idsOfNames.contains(wish)) {
    return wish;
  }
  qsizetype end = wish.size();
  while (end > 0 && wish[end - 1].isDigit()) {
    --end;
  }
  const bool hasNumber = end < wish.size() && end > 0 && wish[end - 1] == u' ';
  const QString stem = hasNumber ? wish.first(end) : wish + u' ';
  for (int number = 2;; ++number) {
    if (const QString name = stem + QString::number(number); !m_parts->idsOfNames.contains(name)) {
      return name;
    }
  }
}

QList<LinkId> EditedGraph::links() const {
  QList<LinkId> ids;
  for (const auto& [id, link] : m_parts->links) {
    ids.append(id);
  }
  return ids;
}

const DrawnLink& EditedGraph::link(LinkId id) const {
  return m_parts->links.at(id).drawn;
}

bool EditedGraph::hasLink(LinkId id) const {
  return m_parts->links.contains(id);
}

QList<LinkId> EditedGraph::linksOf(ActionId id) const {
  return m_parts->linksOfActions.value(id);
}

LinkId EditedGraph::linkInto(ActionId id, int pin) const {
  for (const LinkId each : m_parts->linksOfActions.value(id)) {
    const DrawnLink& link = m_parts->links.at(each).drawn;
    if (link.to == id && link.toPin == pin && link.whyBroken.isEmpty()) {
      return each;
    }
  }
  return kNoId;
}

QString EditedGraph::refusal(ActionId from, int fromPin, ActionId to, int toPin) const {
  if (from == to) {
    return LinkRules::toItself();
  }
  const LinkRecord wanted{{kNoId, from, fromPin, to, toPin, {}}, {}, {}};
  if (const QString why = m_parts->whyEndsAreBroken(wanted); !why.isEmpty()) {
    return why;
  }
  return m_parts->leadsTo(to, from) ? LinkRules::closesCycle(name(from), name(to)) : QString();
}

QList<NoteId> EditedGraph::notes() const {
  QList<NoteId> ids;
  for (const auto& [id, note] : m_parts->notes) {
    ids.append(id);
  }
  return ids;
}

const DrawnNote& EditedGraph::note(NoteId id) const {
  return m_parts->notes.at(id);
}

bool EditedGraph::hasNote(NoteId id) const {
  return m_parts->notes.contains(id);
}

QList<DrawnParameter> EditedGraph::parameters() const {
  return m_parts->parameters;
}

QList<ActionId> EditedGraph::usersOfParameter(const QString& name) const {
  const QString reference = QStringLiteral("${%1}").arg(name);
  const QRegularExpression bareName(
      QStringLiteral("(?<![\\w.])%1(?!\\w)").arg(QRegularExpression::escape(name)),
      QRegularExpression::UseUnicodePropertiesOption);
  QList<ActionId> users;
  for (const ActionId id : m_parts->order) {
    const auto* user = dynamic_cast<const ColumnUser*>(&m_parts->item(id));
    const QStringList expressions = user == nullptr ? QStringList() : user->expressions();
    if (m_parts->records.at(id).element.contains(reference) ||
        std::ranges::any_of(expressions, [&bareName](const QString& expression) {
          return expression.contains(bareName);
        })) {
      users.append(id);
    }
  }
  return users;
}

QString EditedGraph::Parts::whyEndsAreBroken(const LinkRecord& link) {
  const DrawnLink& drawn = link.drawn;
  if (!records.contains(drawn.from)) {
    return LinkRules::absentAction(link.absentFrom);
  }
  if (!records.contains(drawn.to)) {
    return LinkRules::absentAction(link.absentTo);
  }
  if (drawn.fromPin < 0 || drawn.fromPin >= item(drawn.from).outputPinCount()) {
    return LinkRules::absentOutputPin(nameOf(drawn.from), drawn.fromPin);
  }
  if (drawn.toPin < 0 || drawn.toPin >= item(drawn.to).inputPinCount()) {
    return LinkRules::absentInputPin(nameOf(drawn.to), drawn.toPin);
  }
  return {};
}

}  // namespace kelvarin
