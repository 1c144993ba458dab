// A tour of a window: step by step a bubble points at a part of it and says what one can do there.
//
// Nothing is modal, and the window stays as usable as without it. A step goes on only when the user
// says so. Esc leaves it wherever the focus is, unless what has the focus needs the key itself.
// Used by: gui/window.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <vector>

#include <QObject>
#include <QRect>
#include <QSize>
#include <QTimer>

namespace kelvarin {

class TourBubble;

struct TourStep {
  QString title;
  QString text;
  // Brings what it is about into sight; may be null.
  std::function<void()> show;
  // Where that is in coordinates of the window; empty where it is not there now.
  std::function<QRect()> target;
};

class Tour : public QObject {
  Q_OBJECT

 public:
  Tour(QWidget& window, std::vector<TourStep> steps);

  void start();
  void leave();
  bool isOpen() const { return m_index >= 0; }

 signals:
  void left();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void show(int index);
  void follow();

  QWidget& m_window;
  const std::vector<TourStep> m_steps;
  TourBubble* m_bubble;
  int m_index = -1;  // below 0: not open
  QTimer m_follow;
  QRect m_target;
  QSize m_windowSize;
};

// Of a widget, or a part of it, in coordinates of its window; empty while it is hidden.
QRect partOfWindow(const QWidget& widget, const QRect& part);

}  // namespace kelvarin
