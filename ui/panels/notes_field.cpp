#include "ui/panels/notes_field.h"

#include <QAbstractTextDocumentLayout>
#include <QFocusEvent>

namespace kelvarin {

namespace {

constexpr int kMaxLines = 4;

}  // namespace

NotesField::NotesField(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
          &NotesField::fitHeight);
  fitHeight();
}

void NotesField::setNotes(const QString& notes) {
  if (notes != toPlainText()) {
    setPlainText(notes);
  }
}

// The layout of plain texts counts lines, wrapped ones too.
QSize NotesField::sizeHint() const {
  const int lines = static_cast<int>(document()->documentLayout()->documentSize().height());
  const int margins = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
  return {QPlainTextEdit::sizeHint().width(),
          qBound(1, lines, kMaxLines) * fontMetrics().lineSpacing() + margins};
}

// Where all is seen, a bar would only take width.
void NotesField::fitHeight() {
  const bool isWhole = document()->documentLayout()->documentSize().height() <= kMaxLines;
  setVerticalScrollBarPolicy(isWhole ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
  updateGeometry();
}

void NotesField::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason) {
    emit editingFinished();
  }
}

void NotesField::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    fitHeight();
  }
}

}  // namespace kelvarin
