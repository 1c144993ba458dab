#include "gui/properties/editor_focus.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>

namespace kelvarin {

namespace {

void showPages(const QString& pages, const QWidget& editor) {
  const QStringList indexes = pages.split(u' ', Qt::SkipEmptyParts);
  const QList<QTabBar*> bars = editor.findChildren<QTabBar*>();
  for (qsizetype i = 0; i < qMin(bars.size(), indexes.size()); ++i) {
    bars[i]->setCurrentIndex(indexes[i].toInt());
  }
}

void setCursor(QWidget& field, const EditorPosition& position) {
  if (auto* text = qobject_cast<QPlainTextEdit*>(&field)) {
    QTextCursor at = text->textCursor();
    at.setPosition(qBound(0, position.cursor, text->document()->characterCount() - 1));
    text->setTextCursor(at);
  } else if (auto* line = qobject_cast<QLineEdit*>(&field)) {
    line->setCursorPosition(position.cursor);
  } else if (auto* table = qobject_cast<QAbstractItemView*>(&field)) {
    if (table->model() != nullptr) {
      table->setCurrentIndex(table->model()->index(position.cursor, position.column));
    }
  }
}

// A cell that is being edited is part of its table.
const QWidget* tableOrSelf(const QWidget* widget, const QWidget& editor) {
  for (const QWidget* outer = widget; outer != &editor; outer = outer->parentWidget()) {
    if (qobject_cast<const QAbstractItemView*>(outer) != nullptr) {
      return outer;
    }
  }
  return widget;
}

// What takes the focus inside a field that is made of several widgets may have no name of its own.
QString nameOf(const QWidget* field, const QWidget& editor) {
  while (field != &editor && field->objectName().isEmpty()) {
    field = field->parentWidget();
  }
  return field == &editor ? QString() : field->objectName();
}

}  // namespace

// The current tab of each tab bar, in the order of the widgets.
QString pagesOf(const QWidget& editor) {
  QStringList pages;
  for (const QTabBar* bar : editor.findChildren<QTabBar*>()) {
    pages += QString::number(bar->currentIndex());
  }
  return pages.join(u' ');
}

bool isInside(const QWidget* widget, const QWidget& root) {
  while (widget != nullptr && widget != &root) {
    widget = widget->parentWidget();
  }
  return widget != nullptr;
}

EditorPosition positionIn(const QWidget& editor, const QWidget* field) {
  EditorPosition position;
  position.page = pagesOf(editor);
  if (field == nullptr || !editor.isAncestorOf(field)) {
    return position;
  }
  const QWidget* whole = tableOrSelf(field, editor);
  position.field = nameOf(whole, editor);
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(whole)) {
    position.cursor = text->textCursor().position();
  } else if (const auto* line = qobject_cast<const QLineEdit*>(whole)) {
    position.cursor = line->cursorPosition();
  } else if (const auto* table = qobject_cast<const QAbstractItemView*>(whole)) {
    position.cursor = table->currentIndex().row();
    position.column = table->currentIndex().column();
  }
  return position;
}

void goTo(const EditorPosition& position, QWidget& editor) {
  showPages(position.page, editor);
  if (position.field.isEmpty()) {
    return;
  }
  if (auto* field = editor.findChild<QWidget*>(position.field)) {
    while (field->focusProxy() != nullptr) {
      field = field->focusProxy();
    }
    field->setFocus(Qt::OtherFocusReason);
    setCursor(*field, position);
  }
}

}  // namespace kelvarin
