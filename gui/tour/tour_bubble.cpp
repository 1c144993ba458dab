#include "gui/tour/tour_bubble.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelvarin {

namespace {

constexpr int kArrow = 12;       // its length, and the space around the bubble that it needs
constexpr int kArrowWidth = 20;  // where it leaves the bubble
constexpr int kRadius = 8;
constexpr int kPadding = 12;
constexpr int kFrame = 3;
constexpr int kCharacters = 48;  // of a line of text

QLabel* textLabel(QLabel* label) {
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

QPainterPath arrowPath(const QRectF& body, BubblePlacement::Side side, QPointF tip) {
  const double half = kArrowWidth / 2.0;
  const double x = std::clamp(tip.x(), body.left() + kRadius + half, body.right() - kRadius - half);
  const double y = std::clamp(tip.y(), body.top() + kRadius + half, body.bottom() - kRadius - half);
  const bool isVertical =
      side == BubblePlacement::Side::below || side == BubblePlacement::Side::above;
  const double edge = side == BubblePlacement::Side::below   ? body.top() + 1
                      : side == BubblePlacement::Side::above ? body.bottom() - 1
                      : side == BubblePlacement::Side::right ? body.left() + 1
                                                             : body.right() - 1;
  QPainterPath path;
  path.moveTo(tip);
  path.lineTo(isVertical ? QPointF(x - half, edge) : QPointF(edge, y - half));
  path.lineTo(isVertical ? QPointF(x + half, edge) : QPointF(edge, y + half));
  path.closeSubpath();
  return path;
}

}  // namespace

TourFrame::TourFrame(QWidget& window) : QWidget(&window) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_NoSystemBackground);
  hide();
}

void TourFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Highlight), kFrame));
  const double inset = kFrame / 2.0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius / 2.0,
                          kRadius / 2.0);
}

TourBubble::TourBubble(QWidget& window)
    : QWidget(&window),
      m_window(window),
      m_frame(new TourFrame(window)),
      m_number(new QLabel),
      m_title(textLabel(new QLabel)),
      m_text(textLabel(new QLabel)),
      m_leave(new QPushButton(tr("Leave (Esc)"))),
      m_back(new QPushButton(tr("Back"))),
      m_next(new QPushButton) {
  setObjectName(QStringLiteral("tourBubble"));
  m_leave->setObjectName(QStringLiteral("tourLeave"));
  m_back->setObjectName(QStringLiteral("tourBack"));
  m_next->setObjectName(QStringLiteral("tourNext"));
  m_next->setAutoDefault(true);
  QFont bold = m_title->font();
  bold.setBold(true);
  m_title->setFont(bold);
  m_text->setMinimumWidth(fontMetrics().averageCharWidth() * kCharacters);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addWidget(m_leave);
  buttons->addStretch(1);
  buttons->addWidget(m_back);
  buttons->addWidget(m_next);
  auto* layout = new QVBoxLayout(this);
  const int margin = kArrow + kPadding;
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(4);
  layout->addWidget(m_number);
  layout->addWidget(m_title);
  layout->addWidget(m_text);
  layout->addSpacing(8);
  layout->addLayout(buttons);
  hide();
  connect(m_leave, &QPushButton::clicked, this, &TourBubble::leaveWanted);
  connect(m_back, &QPushButton::clicked, this, &TourBubble::backWanted);
  connect(m_next, &QPushButton::clicked, this, &TourBubble::nextWanted);
}

void TourBubble::setStep(int index, int count, const QString& title, const QString& text) {
  m_number->setText(tr("Tour, step %1 of %2").arg(index + 1).arg(count));
  m_title->setText(title);
  m_text->setText(text);
  m_back->setEnabled(index > 0);
  m_next->setText(index + 1 < count ? tr("Next") : tr("Done"));
  setAccessibleName(m_number->text() + QStringLiteral(": ") + title);
  setAccessibleDescription(text);
  m_next->setAccessibleDescription(title + QStringLiteral(": ") + text);
  show();
  m_next->setFocus(Qt::OtherFocusReason);
}

void TourBubble::pointAt(const QRect& target) {
  layout()->activate();
  const QSize outer(sizeHint().width(), layout()->hasHeightForWidth()
                                            ? layout()->totalHeightForWidth(sizeHint().width())
                                            : sizeHint().height());
  const QSize body = outer - QSize(2 * kArrow, 2 * kArrow);
  m_placement = bubbleBeside(m_window.rect().adjusted(kArrow, kArrow, -kArrow, -kArrow), target,
                             body, kArrow, layoutDirection());
  setGeometry(m_placement.rectangle.adjusted(-kArrow, -kArrow, kArrow, kArrow));
  m_frame->setGeometry(target.adjusted(-kFrame, -kFrame, kFrame, kFrame));
  m_frame->setVisible(!target.isEmpty());
  m_frame->raise();
  raise();
  update();
}

void TourBubble::leave() {
  m_frame->hide();
  hide();
}

void TourBubble::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF body = QRectF(rect()).adjusted(kArrow, kArrow, -kArrow, -kArrow);
  QPainterPath path;
  path.addRoundedRect(body, kRadius, kRadius);
  if (m_placement.side != BubblePlacement::Side::none) {
    path = path.united(arrowPath(body, m_placement.side, m_placement.tip - pos()));
  }
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawPath(path);
}

}  // namespace kelvarin
