#include "ui/panels/wrapping_choice.h"

#include <algorithm>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QMouseEvent>

#include "ui/panels/form_layout.h"

namespace kelvarin {

ChoiceLabel::ChoiceLabel(const QString& text, QAbstractButton& button, QWidget* parent)
    : QLabel(text, parent), m_button(button) {
  setWordWrap(true);
  setBuddy(&button);
  setToolTip(button.toolTip());
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Its first line is level with the button.
  button.setMinimumHeight(fontMetrics().height());
  const int space = button.sizeHint().height() - fontMetrics().height();
  setContentsMargins(0, std::max(0, space / 2), 0, 0);
}

void ChoiceLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) {
    m_button.setFocus(Qt::MouseFocusReason);
    m_button.click();
  }
}

void putBesideText(QAbstractButton& button, const QString& text, QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  layout->addWidget(&button, 0, Qt::AlignTop);
  layout->addWidget(new ChoiceLabel(text, button, row), 1);
  button.setAccessibleName(QString(text).remove(u'&'));
}

QWidget* choiceRow(const QAbstractButton* button) {
  return button->parentWidget();
}

void makeExclusive(std::initializer_list<QAbstractButton*> buttons, QObject* parent) {
  auto* group = new QButtonGroup(parent);
  for (QAbstractButton* button : buttons) {
    group->addButton(button);
  }
}

}  // namespace kelvarin
