#include "gui/document/graph_steps.h"

#include <utility>

namespace kelvarin {

namespace {

// Something that is in the graph or detached from it, and changes between the two.
class ActionPresence final : public GraphChange {
 public:
  explicit ActionPresence(ActionId id) : m_action{id, {}, nullptr} {}

  void toggle(GraphChanges& changes) {
    if (m_action.item == nullptr) {
      m_action = changes.removeAction(m_action.id);
    } else {
      changes.addAction(std::exchange(m_action, {m_action.id, {}, nullptr}));
    }
  }
  void undo(GraphChanges& changes) override { toggle(changes); }
  void redo(GraphChanges& changes) override { toggle(changes); }

 private:
  DetachedAction m_action;  // without an item while it is in the graph
};

class LinkPresence final : public GraphChange {
 public:
  LinkPresence(const LinkRecord& link, bool isAdded) : m_link(link), m_isAdded(isAdded) {}

  void undo(GraphChanges& changes) override { set(changes, !m_isAdded); }
  void redo(GraphChanges& changes) override { set(changes, m_isAdded); }

 private:
  void set(GraphChanges& changes, bool isThere) {
    if (isThere) {
      changes.addLink(m_link);
    } else {
      m_link = changes.removeLink(m_link.drawn.id);
    }
  }

  LinkRecord m_link;
  const bool m_isAdded;
};

class NotePresence final : public GraphChange {
 public:
  NotePresence(DrawnNote note, bool isAdded) : m_note(std::move(note)), m_isAdded(isAdded) {}

  void undo(GraphChanges& changes) override { set(changes, !m_isAdded); }
  void redo(GraphChanges& changes) override { set(changes, m_isAdded); }

 private:
  void set(GraphChanges& changes, bool isThere) {
    if (isThere) {
      changes.addNote(m_note);
    } else {
      changes.removeNote(m_note.id);
    }
  }

  const DrawnNote m_note;
  const bool m_isAdded;
};

// A value of before and one of after; `kSet` puts one of them into the graph.
template <typename Value, auto kSet>
class ValueChange final : public GraphChange {
 public:
  ValueChange(Value before, Value after) : m_before(std::move(before)), m_after(std::move(after)) {}

  void undo(GraphChanges& changes) override { kSet(changes, m_before); }
  void redo(GraphChanges& changes) override { kSet(changes, m_after); }
  bool join(const GraphChange& later) override {
    const auto* change = dynamic_cast<const ValueChange*>(&later);
    if (change == nullptr) {
      return false;
    }
    m_after = change->m_after;
    return true;
  }

 private:
  const Value m_before;
  Value m_after;
};

struct NameOfAction {
  ActionId id;
  QString name;
};
struct DisabledAction {
  ActionId id;
  bool isDisabled;
};
struct PositionOfAction {
  ActionId id;
  QPointF position;
  bool hasPosition;
};
struct ContentOfAction {
  ActionId id;
  QString typeName;
  ActionContent content;
};

constexpr auto kSetName = [](GraphChanges& changes, const NameOfAction& value) {
  changes.rename(value.id, value.name);
};
constexpr auto kSetDisabled = [](GraphChanges& changes, const DisabledAction& value) {
  changes.setDisabled(value.id, value.isDisabled);
};
constexpr auto kSetPosition = [](GraphChanges& changes, const PositionOfAction& value) {
  changes.move(value.id, value.position, value.hasPosition);
};
constexpr auto kSetContent = [](GraphChanges& changes, const ContentOfAction& value) {
  changes.restoreContent(value.id, value.typeName, value.content);
};
constexpr auto kSetNote = [](GraphChanges& changes, const DrawnNote& value) {
  changes.setNote(value);
};
constexpr auto kSetParameters = [](GraphChanges& changes, const QList<DrawnParameter>& value) {
  changes.setParameters(value);
};

template <typename Value, auto kSet>
std::unique_ptr<GraphChange> change(GraphChanges& changes, Value before, Value after) {
  kSet(changes, after);
  return std::make_unique<ValueChange<Value, kSet>>(std::move(before), std::move(after));
}

}  // namespace

void GraphStep::undo() {
  {
    GraphChanges changes(m_graph);
    changes.beginReplay();
    for (auto change = m_changes.rbegin(); change != m_changes.rend(); ++change) {
      (*change)->undo(changes);
    }
  }
  m_isDone = false;
  showPosition();
}

void GraphStep::redo() {
  if (m_isDone) {
    return;
  }
  {
    GraphChanges changes(m_graph);
    changes.beginReplay();
    for (const auto& change : m_changes) {
      change->redo(changes);
    }
  }
  m_isDone = true;
  showPosition();
}

void GraphStep::showPosition() const {
  if (!m_edits.empty()) {
    m_show(m_edits.front());
  }
}

bool GraphStep::mergeWith(const QUndoCommand* later) {
  const auto& step = static_cast<const GraphStep&>(*later);
  const qint64 elapsed = m_sinceLast.msecsTo(step.m_sinceLast);
  const bool isInTime = m_joining.milliseconds < 0 || elapsed <= m_joining.milliseconds;
  if (step.m_joining.key != m_joining.key || !isInTime ||
      step.m_changes.size() != m_changes.size()) {
    return false;
  }
  for (std::size_t i = 0; i < m_changes.size(); ++i) {
    if (!m_changes[i]->join(*step.m_changes[i])) {
      return false;
    }
  }
  m_sinceLast = step.m_sinceLast;
  return true;
}

std::unique_ptr<GraphChange> addAction(GraphChanges& changes, DetachedAction action) {
  auto change = std::make_unique<ActionPresence>(action.id);
  changes.addAction(std::move(action));
  return change;
}

std::unique_ptr<GraphChange> removeAction(GraphChanges& changes, ActionId id) {
  auto change = std::make_unique<ActionPresence>(id);
  change->redo(changes);
  return change;
}

std::unique_ptr<GraphChange> addLink(GraphChanges& changes, const LinkRecord& link) {
  changes.addLink(link);
  return std::make_unique<LinkPresence>(link, true);
}

std::unique_ptr<GraphChange> removeLink(GraphChanges& changes, LinkId id) {
  return std::make_unique<LinkPresence>(changes.removeLink(id), false);
}

std::unique_ptr<GraphChange> addNote(GraphChanges& changes, const DrawnNote& note) {
  changes.addNote(note);
  return std::make_unique<NotePresence>(note, true);
}

std::unique_ptr<GraphChange> removeNote(GraphChanges& changes, NoteId id) {
  return std::make_unique<NotePresence>(changes.removeNote(id), false);
}

std::unique_ptr<GraphChange> setNote(GraphChanges& changes, const DrawnNote& note) {
  return change<DrawnNote, kSetNote>(changes, changes.note(note.id), note);
}

std::unique_ptr<GraphChange> rename(GraphChanges& changes, ActionId id, const QString& name) {
  return change<NameOfAction, kSetName>(changes, {id, changes.record(id).name}, {id, name});
}

std::unique_ptr<GraphChange> setDisabled(GraphChanges& changes, ActionId id, bool isDisabled) {
  return change<DisabledAction, kSetDisabled>(changes, {id, changes.record(id).isDisabled},
                                              {id, isDisabled});
}

std::unique_ptr<GraphChange> moveAction(GraphChanges& changes, ActionId id, QPointF position) {
  const ActionRecord& record = changes.record(id);
  return change<PositionOfAction, kSetPosition>(changes, {id, record.position, record.hasPosition},
                                                {id, position, true});
}

std::unique_ptr<GraphChange> setParameters(GraphChanges& changes,
                                           const QList<DrawnParameter>& parameters) {
  return change<QList<DrawnParameter>, kSetParameters>(changes, changes.parameters(), parameters);
}

std::unique_ptr<GraphChange> setContent(GraphChanges& changes, ActionId id, const QString& typeName,
                                        const QString& element) {
  ContentOfAction before{id, changes.record(id).typeName, changes.record(id).content};
  if (!changes.setContent(id, typeName, element)) {
    return nullptr;
  }
  ContentOfAction after{id, typeName, changes.record(id).content};
  return std::make_unique<ValueChange<ContentOfAction, kSetContent>>(std::move(before),
                                                                     std::move(after));
}

std::unique_ptr<GraphChange> takeEdit(GraphChanges& changes, ActionId id) {
  ContentOfAction before{id, changes.record(id).typeName, changes.takeEdit(id)};
  ContentOfAction after{id, before.typeName, changes.record(id).content};
  if (before.content == after.content) {
    return nullptr;
  }
  return std::make_unique<ValueChange<ContentOfAction, kSetContent>>(std::move(before),
                                                                     std::move(after));
}

}  // namespace kelvarin
