#include "gui/properties/undo_keys.h"

#include <optional>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include "gui/properties/editor_focus.h"

namespace kelvarin {

namespace {

struct OwnSteps {
  bool canUndo = false;
  bool canRedo = false;
};

OwnSteps stepsOf(const QTextDocument& document, bool isReadOnly) {
  return {!isReadOnly && document.isUndoAvailable(), !isReadOnly && document.isRedoAvailable()};
}

const QLineEdit* lineOf(const QWidget& widget) {
  if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
    return box->lineEdit();
  }
  if (qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr) {
    return widget.findChild<QLineEdit*>();
  }
  return qobject_cast<const QLineEdit*>(&widget);
}

// Nothing for a widget in which nobody types.
std::optional<OwnSteps> ownStepsOf(const QWidget& widget) {
  if (const QLineEdit* line = lineOf(widget)) {
    return OwnSteps{line->isUndoAvailable(), line->isRedoAvailable()};
  }
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(&widget)) {
    return stepsOf(*text->document(), text->isReadOnly());
  }
  if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) {
    return stepsOf(*text->document(), text->isReadOnly());
  }
  return {};
}

}  // namespace

UndoKeys::UndoKeys(QWidget& window) : QObject(&window), m_window(window) {
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, QWidget* focused) { follow(focused); });
}

void UndoKeys::follow(QWidget* focused) {
  if (m_field != nullptr) {
    m_field->removeEventFilter(this);
  }
  m_field = isInside(focused, m_window) ? focused : nullptr;
  if (m_field != nullptr) {
    m_field->installEventFilter(this);
  }
}

// A key that no field claims goes on to the actions of the window.
bool UndoKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride || watched != m_field) {
    return false;
  }
  auto* key = static_cast<QKeyEvent*>(event);
  const bool isUndo = key->matches(QKeySequence::Undo);
  if (!isUndo && !key->matches(QKeySequence::Redo)) {
    return false;
  }
  const auto own = ownStepsOf(*m_field);
  if (!own || (isUndo ? own->canUndo : own->canRedo)) {
    return false;
  }
  key->ignore();
  return true;
}

}  // namespace kelvarin
