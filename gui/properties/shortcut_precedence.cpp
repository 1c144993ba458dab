#include "gui/properties/shortcut_precedence.h"

#include <QAction>
#include <QApplication>
#include <QShortcut>
#include <QWidget>

#include "gui/properties/editor_focus.h"

namespace kelvarin {

namespace {

QList<QKeySequence> keysOf(const QWidget& owner) {
  QList<QKeySequence> keys;
  for (const QShortcut* shortcut : owner.findChildren<QShortcut*>()) {
    keys += shortcut->key();
  }
  for (const QAction* action : owner.findChildren<QAction*>()) {
    keys += action->shortcuts();
  }
  return keys;
}

}  // namespace

ShortcutPrecedence::ShortcutPrecedence(QWidget& inner, QWidget& window)
    : QObject(&window), m_inner(inner), m_window(window) {
  // Later, for the focus also changes while widgets are being destroyed.
  connect(
      qApp, &QApplication::focusChanged, this, [this] { followFocus(QApplication::focusWidget()); },
      Qt::QueuedConnection);
}

// Elsewhere, in another window for instance, nothing changes.
void ShortcutPrecedence::followFocus(const QWidget* focused) {
  if (!isInside(focused, m_window)) {
    return;
  }
  takeBack();
  if (isInside(focused, m_inner)) {
    yieldTo(m_inner);
  }
}

void ShortcutPrecedence::yieldTo(const QWidget& owner) {
  const QList<QKeySequence> keys = keysOf(owner);
  for (QAction* action : m_window.findChildren<QAction*>()) {
    const QList<QKeySequence> own = action->shortcuts();
    const auto* parent = qobject_cast<const QWidget*>(action->parent());
    if (action->shortcutContext() != Qt::WindowShortcut ||
        (parent != nullptr && owner.isAncestorOf(parent))) {
      continue;
    }
    QList<QKeySequence> left = own;
    left.removeIf([&keys](const QKeySequence& key) { return keys.contains(key); });
    if (left != own) {
      m_yielded.emplace_back(action, own);
      action->setShortcuts(left);
    }
  }
}

void ShortcutPrecedence::takeBack() {
  for (const auto& [action, keys] : m_yielded) {
    if (action != nullptr) {
      action->setShortcuts(keys);
    }
  }
  m_yielded.clear();
}

}  // namespace kelvarin
