#include "host/widgets/empty_state.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/widgets/wrapped_height.h"

namespace kelvarin {

EmptyState::EmptyState(IconName name, const QString& sentence, QWidget* parent)
    : QWidget(parent),
      m_iconName(name),
      m_icon(new QLabel(this)),
      m_sentence(new QLabel(sentence, this)),
      m_button(new QPushButton(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 16);
  layout->setSpacing(12);
  layout->addStretch();
  layout->addWidget(m_icon, 0, Qt::AlignHCenter);
  layout->addWidget(m_sentence);
  layout->addWidget(m_button, 0, Qt::AlignHCenter);
  layout->addStretch();
  m_sentence->setWordWrap(true);
  m_sentence->setAlignment(Qt::AlignHCenter);
  m_sentence->setTextFormat(Qt::PlainText);
  m_button->hide();
  new WrappedHeight(*this);
  connect(m_button, &QPushButton::clicked, this, &EmptyState::actionTriggered);
  showIcon();
}

void EmptyState::setSentence(const QString& sentence) {
  m_sentence->setText(sentence);
}

void EmptyState::setAction(const QString& label) {
  m_button->setText(label);
  m_button->setVisible(!label.isEmpty());
}

void EmptyState::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    showIcon();
  }
}

void EmptyState::showIcon() {
  const int side = 2 * fontMetrics().height();
  m_icon->setPixmap(icon(m_iconName).pixmap(QSize(side, side), QIcon::Disabled));
}

}  // namespace kelvarin
