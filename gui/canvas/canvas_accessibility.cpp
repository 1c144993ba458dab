#include "gui/canvas/canvas_accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

class ActionInterface final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  ActionInterface(CanvasView& view, ActionId action) : m_view(&view), m_action(action) {}

  bool isValid() const override { return m_view != nullptr && box() != nullptr; }
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
    if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description)) {
      return {};
    }
    const CanvasScene& scene = m_view->canvasScene();
    const ActionState& state = scene.state(m_action);
    const QString problem = scene.problem(m_action);
    return kind == QAccessible::Name ? spokenText(scene.graph(), m_action, state, problem)
                                     : toolTipOfAction(scene.graph(), m_action, state, problem);
  }
  QRect rect() const override {
    if (!isValid()) {
      return {};
    }
    const QRect area = m_view->mapFromScene(box()->body()).boundingRect();
    return {m_view->viewport()->mapToGlobal(area.topLeft()), area.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.focusable = true;
    state.selectable = true;
    if (isValid()) {
      state.selected = box()->isSelected();
      state.focused = m_view->hasFocus() && m_view->currentAction() == m_action;
      state.offscreen = !m_view->seenArea().intersects(box()->body());
    }
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  QStringList actionNames() const override { return {setFocusAction(), pressAction()}; }
  void doAction(const QString& name) override {
    if (!isValid()) {
      return;
    }
    m_view->showAction(m_action);
    if (name == pressAction()) {
      emit m_view->openWanted(m_action);
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  const ActionBox* box() const { return m_view->canvasScene().box(m_action); }

  QPointer<CanvasView> m_view;
  const ActionId m_action;
};

class CanvasInterface final : public QAccessibleWidget {
 public:
  explicit CanvasInterface(CanvasView* view)
      : QAccessibleWidget(view, QAccessible::List, view->accessibleName()) {}
  ~CanvasInterface() override {
    for (const QAccessible::Id id : std::as_const(m_children)) {
      QAccessible::deleteAccessibleInterface(id);
    }
  }

  int childCount() const override { return graph().actionCount(); }
  QAccessibleInterface* child(int index) const override {
    const QList<ActionId> actions = graph().actions();
    return index >= 0 && index < actions.size() ? interfaceOf(actions[index]) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const QList<ActionId> actions = graph().actions();
    for (int i = 0; i < actions.size(); ++i) {
      if (interfaceOf(actions[i]) == child) {
        return i;
      }
    }
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint position = view().viewport()->mapFromGlobal(QPoint(x, y));
    const CanvasHit hit = view().canvasScene().hitAt(view().mapToScene(position), 0.0);
    return hit.pin.action == kNoId ? nullptr : interfaceOf(hit.pin.action);
  }
  QAccessibleInterface* focusChild() const override {
    const ActionId current = view().currentAction();
    return current == kNoId ? nullptr : interfaceOf(current);
  }

 private:
  CanvasView& view() const { return *static_cast<CanvasView*>(widget()); }
  EditedGraph& graph() const { return view().canvasScene().graph(); }
  QAccessibleInterface* interfaceOf(ActionId action) const {
    const auto found = m_children.constFind(action);
    if (found != m_children.constEnd()) {
      return QAccessible::accessibleInterface(*found);
    }
    auto* made = new ActionInterface(view(), action);
    m_children.insert(action, QAccessible::registerAccessibleInterface(made));
    return made;
  }

  mutable QHash<ActionId, QAccessible::Id> m_children;
};

QAccessibleInterface* canvasInterface(const QString&, QObject* object) {
  auto* view = qobject_cast<CanvasView*>(object);
  return view == nullptr ? nullptr : new CanvasInterface(view);
}

}  // namespace

void installCanvasAccessibility() {
  static const bool kInstalled = [] {
    QAccessible::installFactory(canvasInterface);
    return true;
  }();
  Q_UNUSED(kInstalled);
}

}  // namespace kelvarin
