#include "host/widget_testing/random_events.h"

#include <array>
#include <cstdio>
#include <random>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDrag>
#include <QMouseEvent>
#include <QPointer>
#include <QSizeGrip>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

namespace kelvarin::testing {

namespace {

constexpr int kMillisecondsBetweenAnswers = 5;
constexpr int kStepsOfDrag = 4;

constexpr std::array kKeys = {Qt::Key_Tab,    Qt::Key_Backtab,   Qt::Key_Return, Qt::Key_Escape,
                              Qt::Key_Space,  Qt::Key_Left,      Qt::Key_Right,  Qt::Key_Up,
                              Qt::Key_Down,   Qt::Key_Home,      Qt::Key_End,    Qt::Key_PageUp,
                              Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_F1,     Qt::Key_F2,
                              Qt::Key_F5,     Qt::Key_F7,        Qt::Key_F9,     Qt::Key_F10,
                              Qt::Key_Z,      Qt::Key_A,         Qt::Key_C,      Qt::Key_V,
                              Qt::Key_Plus,   Qt::Key_Minus};
constexpr std::array kModifiers = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                   Qt::ControlModifier, Qt::AltModifier};
constexpr char kLetters[] = "abcxyz_019.+-*/()<>=!?:&|\"\\,{} \t";

std::uint32_t seedOfRun() {
  const QByteArray given = qgetenv("RANDOM_EVENTS_SEED");
  const std::uint32_t seed = given.isEmpty() ? std::random_device()() : given.toUInt();
  std::printf("RANDOM_EVENTS_SEED=%u\n", seed);
  std::fflush(stdout);
  return seed;
}

int countOfRun(int usual) {
  const QByteArray given = qgetenv("RANDOM_EVENTS_COUNT");
  return given.isEmpty() ? usual : given.toInt();
}

class RandomEvents {
  int below(std::size_t bound) { return static_cast<int>(m_engine() % bound); }
  template <typename List>
  typename List::value_type pick(const List& list) {
    return list[static_cast<std::size_t>(below(list.size()))];
  }

 public:
  RandomEvents(QWidget& root, std::uint32_t seed) : m_root(root), m_engine(seed) {
    // A question keeps its caller in a loop of its own, in which only timers go on.
    QObject::connect(&m_answering, &QTimer::timeout, &m_answering, [this] { answerQuestion(); });
    m_answering.start(kMillisecondsBetweenAnswers);
  }

  void send() {
    QWidget* target = anyVisible();
    if (target == nullptr) {
      return;
    }
    switch (below(10)) {
      case 0:
        click(*target, Qt::LeftButton, anyModifier());
        break;
      case 1:
        doubleClick(*target);
        break;
      case 2:
        click(*target, Qt::RightButton, Qt::NoModifier);
        break;
      case 3:
        turnWheel(*target);
        break;
      case 4:
        press(*withFocus(target), pick(kKeys), anyModifier());
        break;
      case 5:
        target->setFocus();
        break;
      case 6:
        drag(*target, *anyVisible());
        break;
      case 7:
        triggerAny();
        break;
      default:
        press(*withFocus(target), kLetters[below(sizeof kLetters - 1)], Qt::NoModifier);
    }
    QApplication::processEvents();
  }

 private:
  Qt::KeyboardModifier anyModifier() { return pick(kModifiers); }

  // Grips ask the window system to resize, which needs a window that no event has closed.
  QWidget* anyVisible() {
    QList<QWidget*> visible;
    for (QWidget* widget : m_root.findChildren<QWidget*>()) {
      const bool isGrip = qobject_cast<QSizeGrip*>(widget) != nullptr;
      if (widget->isVisibleTo(&m_root) && widget->isEnabled() && !isGrip) {
        visible.push_back(widget);
      }
    }
    return visible.isEmpty() ? nullptr : visible[below(static_cast<std::size_t>(visible.size()))];
  }

  static QWidget* withFocus(QWidget* otherwise) {
    QWidget* focused = QApplication::focusWidget();
    return focused != nullptr ? focused : otherwise;
  }

  QPoint pointIn(const QWidget& widget) {
    return {below(static_cast<std::size_t>(std::max(1, widget.width()))),
            below(static_cast<std::size_t>(std::max(1, widget.height())))};
  }

  // What an event of a click does may delete the widget.
  void click(QWidget& widget, Qt::MouseButton button, Qt::KeyboardModifier modifier) {
    const QPointer<QWidget> target(&widget);
    const QPoint at = pointIn(widget);
    QTest::mousePress(target, button, modifier, at);
    if (target != nullptr) {
      QTest::mouseRelease(target, button, modifier, at);
    }
  }

  static void move(QWidget& widget, QPoint global) {
    QMouseEvent event(QEvent::MouseMove, widget.mapFromGlobal(global), global, Qt::NoButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }

  // From the middle of nowhere into another widget, mostly a part of the same one.
  void drag(QWidget& widget, const QWidget& other) {
    const QPointer<QWidget> target(&widget);
    const QPoint from = pointIn(widget);
    const QWidget& goal = below(3) == 0 ? other : widget;
    const QPoint way = goal.mapToGlobal(pointIn(goal)) - widget.mapToGlobal(from);
    const QPoint start = widget.mapToGlobal(from);
    QTest::mousePress(target, Qt::LeftButton, anyModifier(), from);
    for (int step = 1; step <= kStepsOfDrag && target != nullptr; ++step) {
      move(*target, start + way * step / kStepsOfDrag);
      QApplication::processEvents();
    }
    if (target != nullptr) {
      QTest::mouseRelease(target, Qt::LeftButton, Qt::NoModifier,
                          target->mapFromGlobal(start + way));
    }
  }

  void triggerAny() {
    QList<QAction*> actions = m_root.findChildren<QAction*>();
    actions.removeIf([](const QAction* action) { return !action->isEnabled(); });
    if (!actions.isEmpty()) {
      actions[below(static_cast<std::size_t>(actions.size()))]->trigger();
    }
  }

  void doubleClick(QWidget& widget) {
    const QPointer<QWidget> target(&widget);
    const QPoint at = pointIn(widget);
    click(widget, Qt::LeftButton, Qt::NoModifier);
    if (target != nullptr) {
      QMouseEvent event(QEvent::MouseButtonDblClick, at, target->mapToGlobal(at), Qt::LeftButton,
                        Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(target, &event);
    }
    if (target != nullptr) {
      QTest::mouseRelease(target, Qt::LeftButton, Qt::NoModifier, at);
    }
  }

  template <typename Key>
  static void press(QWidget& widget, Key key, Qt::KeyboardModifier modifier) {
    const QPointer<QWidget> target(&widget);
    QTest::keyPress(target, key, modifier);
    if (target != nullptr) {
      QTest::keyRelease(target, key, modifier);
    }
  }

  void turnWheel(QWidget& widget) {
    const QPoint at = pointIn(widget);
    const int angle = below(2) == 0 ? 120 : -120;
    QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, angle}, Qt::NoButton, anyModifier(),
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
  }

  void answerQuestion() {
    QDrag::cancel();  // which waits for events of a real screen
    if (QWidget* popup = QApplication::activePopupWidget()) {
      popup->close();
      return;
    }
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
      return;
    }
    const QList<QAbstractButton*> buttons = dialog->findChildren<QAbstractButton*>();
    if (buttons.isEmpty() || below(2) == 0) {
      dialog->reject();
      return;
    }
    // Later, since what it opens may be a question again, which needs this timer.
    QPointer<QAbstractButton> button = buttons[below(static_cast<std::size_t>(buttons.size()))];
    QTimer::singleShot(0, button, [button] { button->click(); });
  }

  QWidget& m_root;
  std::mt19937 m_engine;
  QTimer m_answering;
};

}  // namespace

void sendRandomEvents(QWidget& root, int count, const std::function<void(int)>& afterEach) {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  for (QAbstractItemView* view : root.findChildren<QAbstractItemView*>()) {
    QTest::keySequence(view, QKeySequence::Copy);  // also where nothing is chosen
  }
  RandomEvents events(root, seedOfRun());
  const int total = countOfRun(count);
  for (int i = 0; i < total; ++i) {
    events.send();
    if (afterEach) {
      afterEach(i);
    }
  }
}

}  // namespace kelvarin::testing
