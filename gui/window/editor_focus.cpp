#include "gui/window/editor_focus.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>

namespace kelvarin {

namespace {

// The current tab of each tab bar, in the order of the widgets.
QString pagesOf(const QWidget& editor) {
  QStringList pages;
  for (const QTabBar* bar : editor.findChildren<QTabBar*>()) {
    pages += QString::number(bar->currentIndex());
  }
  return pages.join(u' ');
}

void showPages(const QString& pages, const QWidget& editor) {
  const QStringList indexes = pages.split(u' ', Qt::SkipEmptyParts);
  const QList<QTabBar*> bars = editor.findChildren<QTabBar*>();
  for (qsizetype i = 0; i < qMin(bars.size(), indexes.size()); ++i) {
    bars[i]->setCurrentIndex(indexes[i].toInt());
  }
}

void setCursor(QWidget& field, int cursor) {
  if (auto* text = qobject_cast<QPlainTextEdit*>(&field)) {
    QTextCursor at = text->textCursor();
    at.setPosition(qBound(0, cursor, text->document()->characterCount() - 1));
    text->setTextCursor(at);
  } else if (auto* line = qobject_cast<QLineEdit*>(&field)) {
    line->setCursorPosition(cursor);
  }
}

}  // namespace

EditorPosition positionIn(const QWidget& editor) {
  EditorPosition position;
  position.page = pagesOf(editor);
  const QWidget* focused = QApplication::focusWidget();
  if (focused == nullptr || !editor.isAncestorOf(focused)) {
    return position;
  }
  position.field = focused->objectName();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(focused)) {
    position.cursor = text->textCursor().position();
  } else if (const auto* line = qobject_cast<const QLineEdit*>(focused)) {
    position.cursor = line->cursorPosition();
  }
  return position;
}

void goTo(const EditorPosition& position, QWidget& editor) {
  showPages(position.page, editor);
  if (position.field.isEmpty()) {
    return;
  }
  if (auto* field = editor.findChild<QWidget*>(position.field)) {
    field->setFocus(Qt::OtherFocusReason);
    setCursor(*field, position.cursor);
  }
}

}  // namespace kelvarin
