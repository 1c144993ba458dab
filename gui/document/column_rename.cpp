#include "gui/document/column_rename.h"

#include <memory>
#include <sstream>
#include <utility>

#include "gui/document/graph_changes.h"
#include "host/contract/column_user.h"

namespace kelvarin {

namespace {

QString savedElement(ActionItem& action) {
  std::wostringstream element;
  action.saveXML(element, action.name());
  return QString::fromStdWString(element.str());
}

// A copy of an action, in which its columns are called otherwise.
class ColumnsOfAction {
 public:
  ColumnsOfAction(EditedGraph& graph, ActionId id) : m_graph(graph), m_id(id) {
    const GraphChanges changes(graph);
    m_copy = changes.newItem(changes.record(id).typeName, changes.record(id).element);
    m_user = dynamic_cast<ColumnUser*>(m_copy.get());
    m_before = m_user == nullptr ? QString() : savedElement(*m_copy);
  }

  // An action that does not name columns passes all of them on.
  ColumnFate follow(const QString& oldName, const QString& newName) {
    const ColumnFate fate =
        m_user == nullptr ? ColumnFate::passedOn : m_user->followColumn(oldName, newName);
    return m_graph.isDisabled(m_id) ? ColumnFate::passedOn : fate;
  }
  bool renameMade(const QString& oldName, const QString& newName) {
    return m_user != nullptr && !m_graph.isDisabled(m_id) &&
           m_user->renameMadeColumn(oldName, newName);
  }
  void appendChange(std::vector<ColumnRename::Change>& changes) const {
    if (m_user == nullptr) {
      return;
    }
    if (QString element = savedElement(*m_copy); element != m_before) {
      changes.push_back({m_id, m_before, std::move(element)});
    }
  }

 private:
  const EditedGraph& m_graph;
  ActionId m_id;
  std::unique_ptr<ActionItem> m_copy;
  ColumnUser* m_user = nullptr;
  QString m_before;
};

ActionId above(const EditedGraph& graph, ActionId action) {
  const LinkId link = graph.linkInto(action, 0);
  return link == kNoId ? kNoId : graph.link(link).from;
}

}  // namespace

ColumnRename::ColumnRename(EditedGraph& graph, ActionId action, const QString& oldName,
                           const QString& newName, HasColumn hasColumn)
    : m_graph(graph),
      m_oldName(oldName),
      m_newName(newName),
      m_hasColumn(std::move(hasColumn)),
      m_origin(action),
      m_climbing(action) {}

bool ColumnRename::advance() {
  if (m_climbing != kNoId) {
    climb();
    return true;
  }
  if (m_open.empty()) {
    return false;
  }
  const ActionId current = m_open.front();
  m_open.pop_front();
  follow(current);
  return true;
}

void ColumnRename::climb() {
  const ActionId current = m_climbing;
  ColumnsOfAction columns(m_graph, current);
  if (columns.renameMade(m_oldName, m_newName)) {
    columns.appendChange(m_changes);
    m_hasMaker = true;
    startAt(current);
    return;
  }
  m_hasReachedTop =
      m_hasReachedTop || !m_hasColumn || (current != m_origin && !m_hasColumn(current));
  if (!m_hasReachedTop) {
    m_origin = current;
  }
  m_climbing = above(m_graph, current);
  if (m_climbing == kNoId) {
    startAt(m_origin);
  }
}

void ColumnRename::startAt(ActionId origin) {
  m_origin = origin;
  m_climbing = kNoId;
  m_seen.insert(origin);
  openReadersOf(origin);
}

void ColumnRename::openReadersOf(ActionId action) {
  for (const LinkId id : m_graph.linksOf(action)) {
    const DrawnLink& link = m_graph.link(id);
    if (link.from == action && link.toPin == 0 && link.whyBroken.isEmpty() &&
        !m_seen.contains(link.to)) {
      m_seen.insert(link.to);
      m_open.push_back(link.to);
    }
  }
}

void ColumnRename::follow(ActionId action) {
  ColumnsOfAction columns(m_graph, action);
  const ColumnFate fate = columns.follow(m_oldName, m_newName);
  columns.appendChange(m_changes);
  if (fate == ColumnFate::passedOn) {
    openReadersOf(action);
  }
}

}  // namespace kelvarin
