#include "host/widgets/key_list.h"

#include <algorithm>
#include <tuple>

#include <QAction>
#include <QShortcut>
#include <QWidget>

namespace kelvarin {

namespace {

constexpr char kDescriptions[] = "kelvarinKeys";  // a list: key, what, where, key, what, where, ...

QString shown(const QKeySequence& key) {
  return key.toString(QKeySequence::NativeText);
}

QString nameAround(const QObject* object) {
  for (const QObject* at = object; at != nullptr; at = at->parent()) {
    const auto* widget = qobject_cast<const QWidget*>(at);
    if (widget != nullptr && !widget->accessibleName().isEmpty()) {
      return widget->accessibleName();
    }
  }
  return {};
}

bool isOfWindow(Qt::ShortcutContext context) {
  return context == Qt::WindowShortcut || context == Qt::ApplicationShortcut;
}

void addActions(const QWidget& window, QList<KeyMeaning>& keys) {
  for (const QAction* action : window.findChildren<QAction*>()) {
    QStringList shortcuts;
    for (const QKeySequence& shortcut : action->shortcuts()) {
      shortcuts += shown(shortcut);
    }
    if (!shortcuts.isEmpty() && !action->text().isEmpty()) {
      keys.push_back({QString(action->text()).remove(u'&'), shortcuts.join(QStringLiteral(", ")),
                      isOfWindow(action->shortcutContext()) ? QString() : nameAround(action)});
    }
  }
}

void addShortcuts(const QWidget& window, QList<KeyMeaning>& keys) {
  for (const QShortcut* shortcut : window.findChildren<QShortcut*>()) {
    if (!shortcut->whatsThis().isEmpty()) {
      keys.push_back({shortcut->whatsThis(), shown(shortcut->key()),
                      isOfWindow(shortcut->context()) ? QString() : nameAround(shortcut)});
    }
  }
}

void addDescribed(const QWidget& window, QList<KeyMeaning>& keys) {
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    const QStringList described = widget->property(kDescriptions).toStringList();
    for (qsizetype i = 0; i + 2 < described.size(); i += 3) {
      keys.push_back({described[i + 1], described[i], described[i + 2]});
    }
  }
}

}  // namespace

void describeKey(QWidget& widget, const QKeySequence& key, const QString& what,
                 const QString& where) {
  widget.setProperty(kDescriptions, widget.property(kDescriptions).toStringList() +
                                        QStringList{shown(key), what, where});
}

QList<KeyMeaning> keysOf(const QWidget& window) {
  QList<KeyMeaning> keys;
  addActions(window, keys);
  addShortcuts(window, keys);
  addDescribed(window, keys);
  std::sort(keys.begin(), keys.end(), [](const KeyMeaning& a, const KeyMeaning& b) {
    return std::tie(a.where, a.what, a.keys) < std::tie(b.where, b.what, b.keys);
  });
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace kelvarin
