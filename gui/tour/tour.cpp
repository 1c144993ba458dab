#include "gui/tour/tour.h"

#include <utility>

#include <QKeyEvent>
#include <QWidget>

#include "gui/tour/tour_bubble.h"

namespace kelvarin {

namespace {

constexpr int kFollowMilliseconds = 50;  // panels are moved and canvases zoomed meanwhile

}  // namespace

Tour::Tour(QWidget& window, std::vector<TourStep> steps)
    : QObject(&window),
      m_window(window),
      m_steps(std::move(steps)),
      m_bubble(new TourBubble(window)) {
  window.installEventFilter(this);
  m_follow.setInterval(kFollowMilliseconds);
  connect(&m_follow, &QTimer::timeout, this, &Tour::follow);
  connect(m_bubble, &TourBubble::leaveWanted, this, &Tour::leave);
  connect(m_bubble, &TourBubble::backWanted, this, [this] { show(m_index - 1); });
  connect(m_bubble, &TourBubble::nextWanted, this, [this] {
    if (m_index + 1 < static_cast<int>(m_steps.size())) {
      show(m_index + 1);
    } else {
      leave();
    }
  });
}

// Keys that no widget has taken come to the window.
bool Tour::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && isOpen() &&
      static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Escape) {
    leave();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

void Tour::start() {
  show(0);
  m_follow.start();
}

void Tour::leave() {
  if (!isOpen()) {
    return;
  }
  m_follow.stop();
  m_index = -1;
  m_bubble->leave();
  emit left();
}

void Tour::show(int index) {
  m_index = index;
  const TourStep& step = m_steps[static_cast<std::size_t>(index)];
  if (step.show) {
    step.show();
  }
  m_bubble->setStep(index, static_cast<int>(m_steps.size()), step.title, step.text);
  m_target = step.target();
  m_windowSize = m_window.size();
  m_bubble->pointAt(m_target);
}

void Tour::follow() {
  const QRect target = m_steps[static_cast<std::size_t>(m_index)].target();
  if (target != m_target || m_windowSize != m_window.size()) {
    m_target = target;
    m_windowSize = m_window.size();
    m_bubble->pointAt(target);
  }
}

QRect partOfWindow(const QWidget& widget, const QRect& part) {
  if (!widget.isVisible() || widget.visibleRegion().isEmpty()) {
    return {};
  }
  return {widget.mapTo(widget.window(), part.topLeft()), part.size()};
}

}  // namespace kelvarin
