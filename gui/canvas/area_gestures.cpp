#include <memory>

#include <QGraphicsRectItem>
#include <QPen>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

class BandGesture final : public CanvasGesture {
 public:
  BandGesture(const GestureParts& parts, QPointF start, bool adds)
      : m_parts(parts),
        m_start(start),
        m_before(parts.scene.selection()),
        m_kept(adds ? m_before : GraphSelection()),
        m_band(std::make_unique<QGraphicsRectItem>()) {
    QColor fill = m_parts.scene.colors().accent;
    QPen pen(fill, 1.0);
    pen.setCosmetic(true);
    fill.setAlpha(40);
    m_band->setPen(pen);
    m_band->setBrush(fill);
    m_band->setZValue(4);
    m_parts.scene.addItem(m_band.get());
  }

  void moveTo(QPointF point, Qt::KeyboardModifiers) override {
    const QRectF area = QRectF(m_start, point).normalized();
    m_band->setRect(area);
    GraphSelection selection = m_kept;
    for (const QGraphicsItem* item : m_parts.scene.items(area, Qt::IntersectsItemBoundingRect)) {
      if (const auto* box = qgraphicsitem_cast<const ActionBox*>(item)) {
        if (box->body().intersects(area)) {
          selection.actions.insert(box->id());
        }
      } else if (const auto* note = qgraphicsitem_cast<const NoteBox*>(item)) {
        // A note may lie around the actions; those are meant, unless it is all in the rectangle.
        if (area.contains(note->body())) {
          selection.notes.insert(note->id());
        }
      }
    }
    m_parts.scene.setSelection(selection);
  }
  void finish(QPoint) override {}
  void cancel() override { m_parts.scene.setSelection(m_before); }

 private:
  GestureParts m_parts;
  const QPointF m_start;
  const GraphSelection m_before;
  const GraphSelection m_kept;
  std::unique_ptr<QGraphicsRectItem> m_band;
};

class NoteResizeGesture final : public CanvasGesture {
 public:
  NoteResizeGesture(const GestureParts& parts, NoteId note, QPointF start)
      : m_parts(parts),
        m_id(note),
        m_start(start),
        m_area(parts.scene.graph().note(note).rectangle) {}

  void moveTo(QPointF point, Qt::KeyboardModifiers modifiers) override {
    const QPointF way = point - m_start;
    QPointF end = m_area.bottomRight() + way;
    if (!modifiers.testFlag(Qt::AltModifier)) {
      end = snappedToGrid(end);
    }
    m_size = QSizeF(end.x() - m_area.left(), end.y() - m_area.top()).expandedTo(kMinimumNoteSize);
    if (NoteBox* note = m_parts.scene.note(m_id)) {
      note->setSize(m_size);
    }
  }
  void finish(QPoint) override {
    if (m_parts.scene.note(m_id) == nullptr || !m_size.isValid() || m_size == m_area.size()) {
      return;
    }
    const DrawnNote note = m_parts.scene.graph().note(m_id);
    m_parts.commands.setNote(m_id, {m_area.topLeft(), m_size}, note.text, note.colour);
  }
  void cancel() override {
    if (NoteBox* note = m_parts.scene.note(m_id)) {
      note->read();
    }
  }

 private:
  GestureParts m_parts;
  const NoteId m_id;
  const QPointF m_start;
  const QRectF m_area;
  QSizeF m_size;
};

}  // namespace

std::unique_ptr<CanvasGesture> startBand(const GestureParts& parts, QPointF start, bool adds) {
  return std::make_unique<BandGesture>(parts, start, adds);
}

std::unique_ptr<CanvasGesture> startNoteResize(const GestureParts& parts, NoteId note,
                                               QPointF start) {
  return std::make_unique<NoteResizeGesture>(parts, note, start);
}

}  // namespace kelvarin
