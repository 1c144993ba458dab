#include "host/widgets/search_field.h"

#include <QAction>
#include <QKeyEvent>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr int kRestMilliseconds = 150;

}  // namespace

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent), m_icon(addAction(icon(IconName::search), LeadingPosition)) {
  setClearButtonEnabled(true);
  setPlaceholderText(tr("Search"));
  setAccessibleName(tr("Search"));
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestMilliseconds);
  connect(&m_rest, &QTimer::timeout, this, &SearchField::report);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (text.isEmpty()) {
      report();
    } else {
      m_rest.start();
    }
  });
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape && !text().isEmpty()) {
    clear();
    return;
  }
  if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down) {
    report();
    if (m_list != nullptr) {
      m_list->setFocus(Qt::OtherFocusReason);
    }
    return;
  }
  QLineEdit::keyPressEvent(event);
}

void SearchField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    m_icon->setIcon(icon(IconName::search));
  }
}

void SearchField::report() {
  m_rest.stop();
  if (text() == m_reported) {
    return;
  }
  m_reported = text();
  emit searched(m_reported);
}

}  // namespace kelvarin
