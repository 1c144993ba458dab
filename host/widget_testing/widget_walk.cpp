#include "host/widget_testing/widget_walk.h"

#include <array>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSet>
#include <QShortcut>
#include <QShortcutEvent>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>

namespace kelvarin::testing {

namespace {

QString pathOf(const QWidget& widget) {
  const QString name = widget.objectName();
  const QString own = QString::fromLatin1(widget.metaObject()->className()) +
                      (name.isEmpty() ? QString() : QStringLiteral(" '%1'").arg(name));
  const QWidget* parent = widget.parentWidget();
  return parent == nullptr || widget.isWindow() ? own
                                                : pathOf(*parent) + QStringLiteral(" / ") + own;
}

template <typename... Types>
bool isOneOf(const QWidget& widget) {
  return ((qobject_cast<const Types*>(&widget) != nullptr) || ...);
}

bool isControl(const QWidget& widget) {
  return isOneOf<QAbstractButton, QAbstractItemView, QAbstractSpinBox, QComboBox, QLineEdit,
                 QPlainTextEdit, QTabBar, QTextEdit>(widget);
}

// The inner parts of composed controls, which speak through them.
bool isPartOfControl(const QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  return isOneOf<QHeaderView>(widget) || widget.objectName().startsWith(QStringLiteral("qt_")) ||
         (parent != nullptr &&
          isOneOf<QAbstractSpinBox, QComboBox, QHeaderView, QLineEdit, QTabBar>(*parent)) ||
         (parent != nullptr && isOneOf<QAbstractItemView>(*parent) &&
          isOneOf<QAbstractButton>(widget));
}

bool isReadOnlyText(const QWidget& widget) {
  const auto* text = qobject_cast<const QTextEdit*>(&widget);
  return text != nullptr && text->isReadOnly();
}

bool isHidden(const QWidget& widget, const QWidget& root) {
  // A page that is not shown now is hidden by its stack, and counts.
  for (const QWidget* at = &widget; at != nullptr && at != &root; at = at->parentWidget()) {
    const bool isPage = at->parentWidget() != nullptr &&
                        qobject_cast<const QStackedWidget*>(at->parentWidget()) != nullptr;
    if (!isPage && at->isHidden()) {
      return true;
    }
  }
  return false;
}

// In a panel that lies behind others of the same area: Qt lays it out beside the window.
bool isInPanelBehind(const QWidget& widget, const QWidget& root) {
  for (const QWidget* at = &widget; at != nullptr && at != &root; at = at->parentWidget()) {
    if (isOneOf<QDockWidget>(*at) && !at->isWindow() && !root.rect().intersects(at->geometry())) {
      return true;
    }
  }
  return false;
}

QList<QWidget*> controlsOf(const QWidget& root) {
  QList<QWidget*> controls;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    if (isControl(*widget) && !isPartOfControl(*widget) && !isHidden(*widget, root)) {
      controls.push_back(widget);
    }
  }
  return controls;
}

bool isLabelCut(const QLabel& label) {
  if (label.text().isEmpty() || label.property("elides").toBool()) {
    return false;
  }
  const QSize size = label.size();
  if (label.wordWrap()) {
    return label.heightForWidth(size.width()) > size.height();
  }
  const QSize needed = label.sizeHint();
  return needed.width() > size.width() || needed.height() > size.height();
}

bool isControlCut(const QWidget& widget) {
  const bool hasOwnText =
      isOneOf<QAbstractButton, QAbstractSpinBox, QComboBox, QGroupBox, QLineEdit>(widget);
  const QSize needed =
      isOneOf<QAbstractButton>(widget) ? widget.sizeHint() : widget.minimumSizeHint();
  return hasOwnText && (needed.width() > widget.width() || needed.height() > widget.height());
}

bool isCut(const QWidget& widget) {
  const auto* label = qobject_cast<const QLabel*>(&widget);
  return label != nullptr ? isLabelCut(*label) : isControlCut(widget);
}

struct OwnedKey {
  QKeySequence key;
  QWidget* scope;
  Qt::ShortcutContext context;
  QString owner;
};

QList<OwnedKey> keysOf(const QWidget& root) {
  QList<OwnedKey> keys;
  for (const QAction* action : root.findChildren<QAction*>()) {
    auto* scope = qobject_cast<QWidget*>(action->parent());
    for (const QKeySequence& key : action->shortcuts()) {
      keys.push_back({key, scope, action->shortcutContext(), action->text()});
    }
  }
  for (const QShortcut* shortcut : root.findChildren<QShortcut*>()) {
    keys.push_back({shortcut->key(), qobject_cast<QWidget*>(shortcut->parent()),
                    shortcut->context(), shortcut->objectName()});
  }
  for (QAbstractButton* button : root.findChildren<QAbstractButton*>()) {
    if (!button->shortcut().isEmpty() && !button->text().contains(u'&')) {
      keys.push_back({button->shortcut(), button, Qt::WindowShortcut, button->objectName()});
    }
  }
  return keys;
}

// Takes all keys while it lives, and notes those that Qt finds several shortcuts for.
class ShortcutRecord : public QObject {
 public:
  ShortcutRecord() { qApp->installEventFilter(this); }
  const QStringList& ambiguous() const { return m_ambiguous; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Shortcut && static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
      const QString text = watched->property("text").toString();
      m_ambiguous.push_back(QStringLiteral("%1: %2 '%3'")
                                .arg(static_cast<QShortcutEvent*>(event)->key().toString(),
                                     QString::fromLatin1(watched->metaObject()->className()),
                                     text.isEmpty() ? watched->objectName() : text));
    }
    return event->type() == QEvent::Shortcut || event->type() == QEvent::KeyPress ||
           event->type() == QEvent::KeyRelease;
  }

 private:
  QStringList m_ambiguous;
};

// Actions, File, Edit, Graph, Help, Log, View.
const QString kWindowLetters = QStringLiteral("afeghlv");
// Ansicht, Aktionen, Graph, Hilfe, Protokoll.
const QString kGermanWindowLetters = QStringLiteral("akghp");

// That may have a mnemonic.
QStringList visibleTexts(const QWidget& root) {
  QStringList texts;
  for (const QWidget* widget : root.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&root)) {
      continue;
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      texts += button->text();
    } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      texts += label->buddy() != nullptr ? label->text() : QString();
    } else if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
      texts += box->title();
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
      for (int i = 0; i < tabs->count(); ++i) {
        texts += tabs->tabText(i);
      }
    }
  }
  return texts;
}

bool isWithin(const QWidget* inner, const QWidget* outer) {
  return inner == outer || (outer != nullptr && outer->isAncestorOf(inner));
}

// A focus exists at which both would answer.
bool canMeet(const OwnedKey& a, const OwnedKey& b) {
  const auto isOfWindow = [](const OwnedKey& key) {
    return key.context == Qt::WindowShortcut || key.context == Qt::ApplicationShortcut;
  };
  if (isOfWindow(a) || isOfWindow(b)) {
    return true;
  }
  if (a.context == Qt::WidgetShortcut && b.context == Qt::WidgetShortcut) {
    return a.scope == b.scope;
  }
  return isWithin(a.scope, b.scope) || isWithin(b.scope, a.scope);
}

}  // namespace

void onEveryPage(QWidget& root, const std::function<void()>& visit) {
  visit();
  QList<QTabWidget*> all = root.findChildren<QTabWidget*>();
  if (auto* tabs = qobject_cast<QTabWidget*>(&root)) {
    all.push_back(tabs);
  }
  for (QTabWidget* tabs : all) {
    const int current = tabs->currentIndex();
    for (int i = 0; i < tabs->count(); ++i) {
      if (i != current && tabs->isTabVisible(i)) {
        tabs->setCurrentIndex(i);
        QApplication::processEvents();
        visit();
      }
    }
    tabs->setCurrentIndex(current);
  }
}

QStringList controlsWithoutName(QWidget& root) {
  QStringList faults;
  for (QWidget* control : controlsOf(root)) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
    if (accessible == nullptr || accessible->text(QAccessible::Name).trimmed().isEmpty()) {
      faults.push_back(pathOf(*control));
    }
  }
  return faults;
}

QStringList controlsOutOfTabReach(QWidget& root) {
  QStringList faults;
  for (const QWidget* control : controlsOf(root)) {
    const bool isReached = (control->focusPolicy() & Qt::TabFocus) != 0;
    if (!isReached && !isReadOnlyText(*control) && control->focusProxy() == nullptr) {
      faults.push_back(pathOf(*control));
    }
  }
  return faults;
}

QStringList controlsPassedByTab(QWidget& window) {
  constexpr int kMaxPresses = 500;
  QSet<const QWidget*> reached;
  const QWidget* last = nullptr;
  QStringList faults;
  for (int i = 0; i < kMaxPresses; ++i) {
    QTest::keyClick(QApplication::focusWidget() == nullptr ? &window : QApplication::focusWidget(),
                    Qt::Key_Tab);
    QWidget* focused = QApplication::focusWidget();
    if (focused == nullptr || (focused != last && reached.contains(focused))) {
      break;
    }
    last = focused;  // which may have stops of its own
    reached.insert(focused);
    if (!focused->isVisible() || isInPanelBehind(*focused, window)) {
      faults.push_back(QStringLiteral("unseen: ") + pathOf(*focused));
    }
  }
  for (const QWidget* control : controlsOf(window)) {
    const bool takesTab = (control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled() &&
                          control->focusProxy() == nullptr;
    if (takesTab && control->isVisible() && !isInPanelBehind(*control, window) &&
        !reached.contains(control)) {
      faults.push_back(QStringLiteral("passed: ") + pathOf(*control));
    }
  }
  return faults;
}

QStringList cutTexts(QWidget& root) {
  QStringList faults;
  for (const QWidget* widget : root.findChildren<QWidget*>()) {
    if (widget->isVisibleTo(&root) && !isPartOfControl(*widget) &&
        !isInPanelBehind(*widget, root) && isCut(*widget)) {
      const QSize hint = widget->sizeHint();
      faults.push_back(QStringLiteral("%1 is %2 x %3, not %4 x %5")
                           .arg(pathOf(*widget))
                           .arg(widget->width())
                           .arg(widget->height())
                           .arg(hint.width())
                           .arg(hint.height()));
    }
  }
  return faults;
}

QStringList keysWithTwoOwners(QWidget& root) {
  QStringList faults;
  const QList<OwnedKey> keys = keysOf(root);
  for (qsizetype i = 0; i < keys.size(); ++i) {
    for (qsizetype k = i + 1; k < keys.size(); ++k) {
      if (keys[i].key == keys[k].key && canMeet(keys[i], keys[k])) {
        faults.push_back(QStringLiteral("%1: '%2' and '%3'")
                             .arg(keys[i].key.toString(), keys[i].owner, keys[k].owner));
      }
    }
  }
  return faults;
}

QStringList ambiguousKeys(QWidget& window) {
  QSet<QKeySequence> keys;
  for (const OwnedKey& owned : keysOf(window)) {
    keys.insert(owned.key);
  }
  for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter) {
    keys.insert(QKeySequence(Qt::ALT | static_cast<Qt::Key>(letter)));
  }
  ShortcutRecord record;
  for (const QKeySequence& key : keys) {
    QWidget* focused = QApplication::focusWidget();
    // Qt asks one owner after the other.
    for (int time = 0; key.count() == 1 && time < 2; ++time) {
      QTest::keyClick(focused == nullptr ? &window : focused, key[0].key(),
                      key[0].keyboardModifiers());
    }
  }
  return record.ambiguous();
}

QStringList mnemonicsWithTwoOwners(QWidget& root, const QString& language) {
  QHash<QChar, QString> owners;
  for (const QChar letter : language == u"de" ? kGermanWindowLetters : kWindowLetters) {
    owners.insert(letter, QStringLiteral("the window"));
  }
  QStringList faults;
  for (const QString& text : visibleTexts(root)) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (key.isEmpty()) {
      continue;
    }
    const QChar letter = key.toString().back().toLower();
    if (owners.contains(letter)) {
      faults.push_back(QStringLiteral("%1: '%2' and '%3'").arg(letter).arg(owners[letter], text));
    }
    owners.insert(letter, text);
  }
  return faults;
}

LargeFonts::LargeFonts(double factor) : m_pointSize(QApplication::font().pointSizeF()) {
  QFont font = QApplication::font();
  font.setPointSizeF(m_pointSize * factor);
  QApplication::setFont(font);
}

LargeFonts::~LargeFonts() {
  QFont font = QApplication::font();
  font.setPointSizeF(m_pointSize);
  QApplication::setFont(font);
}

}  // namespace kelvarin::testing
