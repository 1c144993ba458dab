#include "gui/canvas/canvas_accessibility.h"

#include <mutex>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/note_box.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

// What actions and notes have in common.
class ItemInterface : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  explicit ItemInterface(CanvasView& view) : m_view(&view) {}

  bool isValid() const override { return m_view != nullptr && exists(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(m_view.data());
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::Role role() const override { return QAccessible::ListItem; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) {
      return {};
    }
    return kind == QAccessible::Name          ? name()
           : kind == QAccessible::Description ? description()
                                              : QString();
  }
  QRect rect() const override {
    if (!isValid()) {
      return {};
    }
    const QRect area = m_view->mapFromScene(body()).boundingRect();
    return {m_view->viewport()->mapToGlobal(area.topLeft()), area.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.focusable = true;
    state.selectable = true;
    if (isValid()) {
      const GraphSelection now = scene().selection();
      state.selected = isIn(now);
      state.focused = m_view->hasFocus() && now == alone();
      state.offscreen = !m_view->seenArea().intersects(body());
    }
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  QStringList actionNames() const override { return {setFocusAction(), pressAction()}; }
  void doAction(const QString& actionName) override {
    if (!isValid()) {
      return;
    }
    m_view->setFocus();
    m_view->showOnly(alone());
    if (actionName == pressAction()) {
      m_view->openCurrent();
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 protected:
  CanvasScene& scene() const { return m_view->canvasScene(); }
  virtual bool exists() const = 0;
  virtual QString name() const = 0;
  virtual QString description() const = 0;
  virtual QRectF body() const = 0;
  virtual bool isIn(const GraphSelection& selection) const = 0;
  // A selection of nothing else.
  virtual GraphSelection alone() const = 0;

 private:
  QPointer<CanvasView> m_view;
};

class ActionInterface final : public ItemInterface {
 public:
  ActionInterface(CanvasView& view, ActionId action) : ItemInterface(view), m_action(action) {}

 protected:
  bool exists() const override { return scene().box(m_action) != nullptr; }
  QString name() const override {
    return spokenText(scene().graph(), m_action, scene().state(m_action),
                      scene().problem(m_action));
  }
  QString description() const override {
    return toolTipOfAction(scene().graph(), m_action, scene().state(m_action),
                           scene().problem(m_action));
  }
  QRectF body() const override { return scene().box(m_action)->body(); }
  bool isIn(const GraphSelection& selection) const override {
    return selection.actions.contains(m_action);
  }
  GraphSelection alone() const override { return {{m_action}, {}, {}}; }

 private:
  const ActionId m_action;
};

class NoteInterface final : public ItemInterface {
 public:
  NoteInterface(CanvasView& view, NoteId note) : ItemInterface(view), m_note(note) {}

 protected:
  bool exists() const override { return scene().note(m_note) != nullptr; }
  QString name() const override {
    return CanvasView::tr("Note: %1").arg(scene().graph().note(m_note).text);
  }
  QString description() const override { return {}; }
  QRectF body() const override { return scene().note(m_note)->body(); }
  bool isIn(const GraphSelection& selection) const override {
    return selection.notes.contains(m_note);
  }
  GraphSelection alone() const override { return {{}, {}, {m_note}}; }

 private:
  const NoteId m_note;
};

// Its children are the actions, then the notes.
class CanvasInterface final : public QAccessibleWidget {
 public:
  explicit CanvasInterface(CanvasView* view)
      : QAccessibleWidget(view, QAccessible::List, view->accessibleName()) {}
  ~CanvasInterface() override {
    for (const QAccessible::Id id : std::as_const(m_actions)) {
      QAccessible::deleteAccessibleInterface(id);
    }
    for (const QAccessible::Id id : std::as_const(m_notes)) {
      QAccessible::deleteAccessibleInterface(id);
    }
  }

  int childCount() const override {
    return graph().actionCount() + static_cast<int>(graph().notes().size());
  }
  QAccessibleInterface* child(int index) const override {
    const QList<ActionId> actions = graph().actions();
    const QList<NoteId> notes = graph().notes();
    if (index < 0 || index >= actions.size() + notes.size()) {
      return nullptr;
    }
    return index < actions.size() ? ofAction(actions[index])
                                  : ofNote(notes[index - actions.size()]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (int i = 0; i < childCount(); ++i) {
      if (this->child(i) == child) {
        return i;
      }
    }
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint position = view().viewport()->mapFromGlobal(QPoint(x, y));
    const CanvasHit hit = view().canvasScene().hitAt(view().mapToScene(position), 0.0);
    return hit.pin.action != kNoId ? ofAction(hit.pin.action)
           : hit.note != kNoId     ? ofNote(hit.note)
                                   : nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    const GraphSelection& selection = view().canvasScene().selection();
    if (view().currentAction() != kNoId) {
      return ofAction(view().currentAction());
    }
    return selection.notes.size() == 1 ? ofNote(*selection.notes.cbegin()) : nullptr;
  }

 private:
  using Ids = QHash<int, QAccessible::Id>;

  CanvasView& view() const { return *static_cast<CanvasView*>(widget()); }
  EditedGraph& graph() const { return view().canvasScene().graph(); }
  template <typename Interface>
  QAccessibleInterface* made(Ids& ids, int item) const {
    const auto found = ids.constFind(item);
    if (found != ids.constEnd()) {
      return QAccessible::accessibleInterface(*found);
    }
    auto* interface = new Interface(view(), item);
    ids.insert(item, QAccessible::registerAccessibleInterface(interface));
    return interface;
  }
  QAccessibleInterface* ofAction(ActionId id) const { return made<ActionInterface>(m_actions, id); }
  QAccessibleInterface* ofNote(NoteId id) const { return made<NoteInterface>(m_notes, id); }

  mutable Ids m_actions;
  mutable Ids m_notes;
};

QAccessibleInterface* canvasInterface(const QString&, QObject* object) {
  auto* view = qobject_cast<CanvasView*>(object);
  return view == nullptr ? nullptr : new CanvasInterface(view);
}

}  // namespace

void installCanvasAccessibility() {
  static std::once_flag installed;
  std::call_once(installed, [] { QAccessible::installFactory(canvasInterface); });
}

}  // namespace kelvarin
