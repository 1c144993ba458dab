#include "gui/canvas/direct_editor.h"

#include <algorithm>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QToolTip>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr int kMinimumNameWidth = 160;
constexpr double kMinimumZoomOfText = 1.0;  // smaller ones are not comfortable to type

QRect onViewport(const CanvasView& view, const QRectF& area) {
  return view.mapFromScene(area).boundingRect();
}

}  // namespace

DirectEditor::DirectEditor(CanvasView& view, GraphCommands& commands)
    : QObject(&view), m_view(view), m_commands(commands) {}

void DirectEditor::editName(ActionId action) {
  commit();
  if (m_view.canvasScene().box(action) == nullptr) {
    return;
  }
  m_action = action;
  auto* field = new QLineEdit(m_commands.graph().name(action), m_view.viewport());
  field->setObjectName(QStringLiteral("canvasName"));
  field->setAccessibleName(tr("Name of the action"));
  field->selectAll();
  open(field);
}

void DirectEditor::editNote(NoteId note) {
  commit();
  NoteBox* box = m_view.canvasScene().note(note);
  if (box == nullptr) {
    return;
  }
  m_note = note;
  const DrawnNote& drawn = m_commands.graph().note(note);
  auto* field = new QPlainTextEdit(drawn.text, m_view.viewport());
  field->setObjectName(QStringLiteral("canvasNote"));
  field->setAccessibleName(tr("Text of the note"));
  field->setTabChangesFocus(true);
  field->setFrameShape(QFrame::NoFrame);
  const QColor paper = drawn.colour.isValid() ? drawn.colour : noteColors().front();
  QPalette palette = field->palette();
  palette.setColor(QPalette::Base, paper);
  palette.setColor(QPalette::Text, textColorOn(paper));
  field->setPalette(palette);
  field->moveCursor(QTextCursor::End);
  box->setShowsText(false);
  open(field);
}

void DirectEditor::open(QWidget* field) {
  m_field = field;
  follow();
  field->installEventFilter(this);
  field->show();
  field->setFocus(Qt::OtherFocusReason);
}

void DirectEditor::follow() {
  if (m_field == nullptr) {
    return;
  }
  const CanvasScene& scene = m_view.canvasScene();
  const double zoom = std::max(m_view.extract().zoom, kMinimumZoomOfText);
  QFont font = m_action != kNoId ? scene.metrics().nameFont() : scene.metrics().textFont();
  font.setPointSizeF(font.pointSizeF() * zoom);
  m_field->setFont(font);
  if (const ActionBox* box = scene.box(m_action)) {
    QRect area = onViewport(m_view, scene.metrics().nameArea().translated(box->pos()));
    const int width = std::max(area.width() + 8, kMinimumNameWidth);
    const int height = std::max(m_field->sizeHint().height(), area.height() + 2);
    m_field->setGeometry(area.left() - 4, area.center().y() - height / 2, width, height);
  } else if (const NoteBox* note = scene.note(m_note)) {
    m_field->setGeometry(onViewport(m_view, note->textArea()).adjusted(-4, -4, 4, 4));
  }
}

bool DirectEditor::commitName(bool staysOpen) {
  const QString name = qobject_cast<QLineEdit*>(m_field.data())->text().trimmed();
  const EditedGraph& graph = m_commands.graph();
  if (!graph.hasAction(m_action) || name == graph.name(m_action) ||
      m_commands.rename(m_action, name)) {
    return true;
  }
  const QString reason =
      name.isEmpty() ? tr("An action needs a name.")
                     : tr("There is another action named '%1'. Choose another name.").arg(name);
  emit m_view.hint(reason);
  if (staysOpen) {
    QToolTip::showText(m_field->mapToGlobal(QPoint(0, m_field->height())), reason, m_field);
  }
  return false;
}

void DirectEditor::commit() {
  if (m_field == nullptr) {
    return;
  }
  if (m_action != kNoId) {
    commitName(false);
  } else if (m_commands.graph().hasNote(m_note)) {
    const DrawnNote note = m_commands.graph().note(m_note);
    const QString text = qobject_cast<QPlainTextEdit*>(m_field.data())->toPlainText();
    if (text != note.text) {
      m_commands.setNote(m_note, note.rectangle, text, note.colour);
    }
  }
  close();
}

// When the event that takes the focus is over: a new name replaces the action, and with it its
// editor, in which the mouse may just have been pressed.
void DirectEditor::commitSoon() {
  QMetaObject::invokeMethod(
      this,
      [this, left = m_field] {
        if (left != nullptr && left == m_field) {
          commit();
        }
      },
      Qt::QueuedConnection);
}

void DirectEditor::discard() {
  close();
}

void DirectEditor::close() {
  if (m_field == nullptr) {
    return;
  }
  QWidget* field = m_field;
  m_field = nullptr;
  field->removeEventFilter(this);
  const bool hadFocus = field->hasFocus();
  field->hide();
  field->deleteLater();
  if (NoteBox* note = m_view.canvasScene().note(m_note)) {
    note->setShowsText(true);
  }
  m_action = kNoId;
  m_note = kNoId;
  if (hadFocus) {
    m_view.setFocus(Qt::OtherFocusReason);
  }
}

bool DirectEditor::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_field) {
    return QObject::eventFilter(watched, event);
  }
  if (event->type() == QEvent::FocusOut &&
      static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
    commitSoon();
    return false;
  }
  if (event->type() != QEvent::KeyPress) {
    return false;
  }
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  if (m_action != kNoId && isEnter) {
    if (commitName(true)) {
      close();
    }
    return true;
  }
  if (m_action != kNoId && key->key() == Qt::Key_Escape) {
    discard();
    return true;
  }
  // What was written in a note is kept; undo takes it back.
  if (m_note != kNoId && (key->key() == Qt::Key_Escape ||
                          (isEnter && key->modifiers().testFlag(Qt::ControlModifier)))) {
    commit();
    return true;
  }
  return false;
}

}  // namespace kelvarin
