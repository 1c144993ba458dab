#include "ui/widgets/k_plain_text_edit.h"

#include <QFocusEvent>

namespace kelvarin {

KPlainTextEdit::KPlainTextEdit(QWidget* parent) : ZoomPlainTextEdit(parent) {}

void KPlainTextEdit::focusOutEvent(QFocusEvent* event) {
  m_savedPosition = textCursor().position();
  m_menuAnchor = event->reason() == Qt::PopupFocusReason ? textCursor().anchor() : -1;
  if (event->type() == QEvent::FocusOut) {
    emit editingFinished();
  }
  ZoomPlainTextEdit::focusOutEvent(event);
}

void KPlainTextEdit::focusInEvent(QFocusEvent* event) {
  // The text may have become shorter meanwhile.
  const int last = document()->characterCount() - 1;
  QTextCursor cursor = textCursor();
  cursor.setPosition(qMin(m_savedPosition, last));
  setTextCursor(cursor);
  ZoomPlainTextEdit::focusInEvent(event);
  if (m_menuAnchor >= 0 && event->reason() == Qt::PopupFocusReason) {
    cursor.setPosition(qMin(m_menuAnchor, last));
    cursor.setPosition(qMin(m_savedPosition, last), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
  }
  m_menuAnchor = -1;
}

}  // namespace kelvarin
