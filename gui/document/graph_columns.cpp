// How a column that is called otherwise is followed through a graph.
#include <deque>
#include <sstream>

#include "gui/document/command_step.h"
#include "host/contract/column_user.h"

namespace kelvarin {

namespace {

// A copy of an action, in which its columns are called otherwise.
class ColumnsOfAction {
 public:
  ColumnsOfAction(GraphChanges& changes, ActionId id)
      : m_changes(changes),
        m_id(id),
        m_copy(changes.newItem(changes.record(id).typeName, changes.record(id).element)),
        m_user(dynamic_cast<ColumnUser*>(m_copy.get())) {}

  // An action that does not name columns passes all of them on.
  ColumnFate follow(const QString& oldName, const QString& newName) {
    const ColumnFate fate =
        m_user == nullptr ? ColumnFate::passedOn : m_user->followColumn(oldName, newName);
    return m_changes.record(m_id).isDisabled ? ColumnFate::passedOn : fate;
  }
  bool renameMade(const QString& oldName, const QString& newName) {
    return m_user != nullptr && !m_changes.record(m_id).isDisabled &&
           m_user->renameMadeColumn(oldName, newName);
  }
  // Null when nothing has changed.
  std::unique_ptr<GraphChange> change() const {
    if (m_user == nullptr ||
        contentOf(*m_copy).settings == m_changes.record(m_id).content.settings) {
      return nullptr;
    }
    std::wostringstream element;
    m_copy->saveXML(element, m_copy->name());
    return setContent(m_changes, m_id, m_changes.record(m_id).typeName,
                      QString::fromStdWString(element.str()));
  }

 private:
  GraphChanges& m_changes;
  ActionId m_id;
  std::unique_ptr<ActionItem> m_copy;
  ColumnUser* m_user;
};

ActionId above(const EditedGraph& graph, ActionId action) {
  const LinkId link = graph.linkInto(action, 0);
  return link == kNoId ? kNoId : graph.link(link).from;
}

}  // namespace

// The action itself, or one above it, makes the column; where none does, as with the columns of a
// file, the name is another one from the action on.
QList<ActionId> GraphCommands::renameColumn(ActionId action, const QString& oldName,
                                            const QString& newName) {
  Step step(*this, tr("Rename column '%1'").arg(oldName));
  QList<ActionId> changed;
  const auto take = [&step, &changed](ActionId id, const ColumnsOfAction& columns) {
    if (std::unique_ptr<GraphChange> change = columns.change()) {
      step.append(std::move(change));
      changed.append(id);
    }
  };
  ActionId first = action;
  for (ActionId maker = action; maker != kNoId; maker = above(m_graph, maker)) {
    ColumnsOfAction columns(step.changes(), maker);
    if (columns.renameMade(oldName, newName)) {
      take(maker, columns);
      first = maker;
      break;
    }
  }
  std::deque<ActionId> open{first};
  QSet<ActionId> seen{first};
  while (!open.empty()) {
    const ActionId current = open.front();
    open.pop_front();
    for (const LinkId id : m_graph.linksOf(current)) {
      const DrawnLink link = m_graph.link(id);
      if (link.from != current || link.toPin != 0 || !link.whyBroken.isEmpty() ||
          seen.contains(link.to)) {
        continue;
      }
      seen.insert(link.to);
      ColumnsOfAction columns(step.changes(), link.to);
      const ColumnFate fate = columns.follow(oldName, newName);
      take(link.to, columns);
      if (fate == ColumnFate::passedOn) {
        open.push_back(link.to);
      }
    }
  }
  return changed;
}

}  // namespace kelvarin
