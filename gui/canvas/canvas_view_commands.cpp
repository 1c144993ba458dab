// What menus and keys do to what is selected on the canvas.
#include <algorithm>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/direct_editor.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr QSizeF kSizeOfNewNote(208.0, 104.0);

QPointF alignedPosition(const QRectF& box, const QRectF& all, Qt::Edge edge) {
  switch (edge) {
    case Qt::LeftEdge:
      return {all.left(), box.top()};
    case Qt::RightEdge:
      return {all.right() - box.width(), box.top()};
    case Qt::TopEdge:
      return {box.left(), all.top()};
    case Qt::BottomEdge:
      return {box.left(), all.bottom() - box.height()};
  }
  return box.topLeft();
}

}  // namespace

void CanvasView::deleteSelection() {
  if (!selection().isEmpty()) {
    m_commands.remove(selection());
  }
}

void CanvasView::deleteSelectionClosingGaps() {
  if (!selection().isEmpty()) {
    m_commands.removeClosingGaps(selection());
  }
}

void CanvasView::copySelection() {
  if (!selection().actions.isEmpty() || !selection().notes.isEmpty()) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(m_commands.copy(selection())));
  }
}

void CanvasView::cutSelection() {
  copySelection();
  deleteSelection();
}

void CanvasView::paste() {
  const QString text = QGuiApplication::clipboard()->text();
  QString reason;
  const GraphSelection pasted =
      m_commands.paste(text.toUtf8(), snappedToGrid(pointOfInterest()), &reason);
  emit hint(reason);
  if (!pasted.isEmpty()) {
    setSelection(pasted);
  }
}

void CanvasView::duplicateSelection() {
  const GraphSelection copies = m_commands.duplicate(selection());
  if (!copies.isEmpty()) {
    setSelection(copies);
  }
}

void CanvasView::renameCurrent() {
  const QSet<NoteId> notes = selection().notes;
  if (const ActionBox* box = m_scene->box(currentAction())) {
    showArea(box->body());
    m_directEditor->editName(box->id());
  } else if (notes.size() == 1) {
    showArea(m_scene->note(*notes.cbegin())->body());
    m_directEditor->editNote(*notes.cbegin());
  }
}

void CanvasView::toggleDisabled() {
  const QSet<ActionId> actions = selection().actions;
  if (actions.isEmpty()) {
    return;
  }
  const bool isOneOn = std::any_of(actions.cbegin(), actions.cend(),
                                   [this](ActionId id) { return !graph().isDisabled(id); });
  m_commands.setDisabled(actions, isOneOn);
}

void CanvasView::addNoteHere() {
  const QPointF corner = snappedToGrid(pointOfInterest());
  const NoteId note = m_commands.addNote({corner, kSizeOfNewNote}, {}, noteColors().front());
  setSelection({{}, {}, {note}});
  showArea({corner, kSizeOfNewNote});
  m_directEditor->editNote(note);
}

void CanvasView::setNoteColor(const QColor& color) {
  const QSet<NoteId> notes = selection().notes;
  if (notes.isEmpty()) {
    return;
  }
  m_commands.together(tr("Colour notes"), [this, &notes, &color] {
    for (const NoteId id : notes) {
      const DrawnNote note = graph().note(id);
      m_commands.setNote(id, note.rectangle, note.text, color);
    }
  });
}

void CanvasView::alignSelection(Qt::Edge edge) {
  QRectF all;
  for (const ActionId id : selection().actions) {
    all |= m_scene->box(id)->body();
  }
  for (const NoteId id : selection().notes) {
    all |= m_scene->note(id)->body();
  }
  QHash<ActionId, QPointF> actions;
  for (const ActionId id : selection().actions) {
    actions.insert(id, alignedPosition(m_scene->box(id)->body(), all, edge));
  }
  QHash<NoteId, QPointF> notes;
  for (const NoteId id : selection().notes) {
    notes.insert(id, alignedPosition(m_scene->note(id)->body(), all, edge));
  }
  if (actions.size() + notes.size() > 1) {
    m_commands.moveActions(actions, notes);
  }
}

void CanvasView::openCurrent() {
  const QSet<NoteId> notes = selection().notes;
  if (currentAction() != kNoId) {
    emit openWanted(currentAction());
  } else if (notes.size() == 1) {
    m_directEditor->editNote(*notes.cbegin());
  }
}

void CanvasView::previewCurrent() {
  const ActionId current = currentAction();
  if (current != kNoId) {
    const bool hasOutput = graph().pinCount(current, true) > 0;
    emit previewWanted({current, 0, hasOutput});
    return;
  }
  const QSet<LinkId> links = selection().links;
  if (links.size() == 1 && graph().link(*links.cbegin()).whyBroken.isEmpty()) {
    const DrawnLink& link = graph().link(*links.cbegin());
    emit previewWanted({link.from, link.fromPin, true});
  }
}

}  // namespace kelvarin
