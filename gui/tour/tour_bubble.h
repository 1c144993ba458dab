// A small bubble of text that points at a part of the window, with a frame around that part.
//
// It lies over the window and stops nobody from using it.
// Used by: tour.cpp.
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/tour/bubble_placement.h"

class QLabel;
class QPushButton;

namespace kelvarin {

// Around what is pointed at.
class TourFrame : public QWidget {
  Q_OBJECT

 public:
  explicit TourFrame(QWidget& window);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class TourBubble : public QWidget {
  Q_OBJECT

 public:
  // Both are parts of the window, and lie over everything in it.
  explicit TourBubble(QWidget& window);

  void setStep(int index, int count, const QString& title, const QString& text);
  // In coordinates of the window; empty where there is nothing to point at.
  void pointAt(const QRect& target);
  void leave();

 signals:
  void nextWanted();
  void backWanted();
  void leaveWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget& m_window;
  TourFrame* m_frame;
  QLabel* m_number;
  QLabel* m_title;
  QLabel* m_text;
  QPushButton* m_leave;
  QPushButton* m_back;
  QPushButton* m_next;
  BubblePlacement m_placement;
};

}  // namespace kelvarin
