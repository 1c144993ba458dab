#include <array>
#include <memory>

#include <QGraphicsLineItem>
#include <QPen>

#include "gui/canvas/action_box.h"
#include "gui/canvas/alignment_guides.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr double kSnapPixels = 6.0;

class MoveGesture final : public CanvasGesture {
 public:
  MoveGesture(const GestureParts& parts, QPointF start);

  void moveTo(QPointF point, Qt::KeyboardModifiers modifiers) override;
  void finish(QPoint globalPosition) override;
  void cancel() override;

 private:
  void collectMoved();
  void collectOthers();
  void show(QPointF offset);
  void showGuides(const QList<QLineF>& guides);
  void end();
  LinkId linkBelow() const;

  GestureParts m_parts;
  const QPointF m_start;
  QHash<ActionId, QPointF> m_actions;  // where they were
  QHash<NoteId, QPointF> m_notes;
  QSet<LinkId> m_links;  // that move with them
  QRectF m_area;
  QList<QRectF> m_others;
  ActionId m_insertable = kNoId;
  QPointF m_offset;
  LinkId m_target = kNoId;
  // Items of their own: one for both would cover the whole canvas, which is drawn anew then.
  std::array<std::unique_ptr<QGraphicsLineItem>, 2> m_guides;
};

MoveGesture::MoveGesture(const GestureParts& parts, QPointF start)
    : m_parts(parts), m_start(start) {
  collectMoved();
  collectOthers();
  QPen pen(m_parts.scene.colors().accent, 1.0, Qt::DashLine);
  pen.setCosmetic(true);
  for (std::unique_ptr<QGraphicsLineItem>& guide : m_guides) {
    guide = std::make_unique<QGraphicsLineItem>();
    guide->setPen(pen);
    guide->setZValue(4);
    guide->hide();
    m_parts.scene.addItem(guide.get());
  }
}

void MoveGesture::collectMoved() {
  const EditedGraph& graph = m_parts.scene.graph();
  const GraphSelection& selection = m_parts.scene.selection();
  for (const ActionId id : selection.actions) {
    if (const ActionBox* box = m_parts.scene.box(id)) {
      m_actions.insert(id, box->pos());
      m_area |= box->body();
      for (const LinkId link : graph.linksOf(id)) {
        m_links.insert(link);
      }
    }
  }
  for (const NoteId id : selection.notes) {
    if (const NoteBox* note = m_parts.scene.note(id)) {
      m_notes.insert(id, note->pos());
      m_area |= note->body();
    }
  }
  if (m_actions.size() != 1 || !m_notes.isEmpty() || !m_links.isEmpty()) {
    return;
  }
  const ActionId only = m_actions.cbegin().key();
  if (graph.pinCount(only, false) > 0 && graph.pinCount(only, true) > 0) {
    m_insertable = only;
  }
}

void MoveGesture::collectOthers() {
  const QRectF seen = m_parts.view.seenArea();
  for (const ActionBox* box : m_parts.scene.boxes()) {
    if (!m_actions.contains(box->id()) && seen.intersects(box->body())) {
      m_others.append(box->body());
    }
  }
}

void MoveGesture::moveTo(QPointF point, Qt::KeyboardModifiers modifiers) {
  const QPointF wanted = point - m_start;
  if (modifiers.testFlag(Qt::AltModifier)) {
    show(wanted);
    showGuides({});
    return;
  }
  const SnappedMove move =
      snappedMove(m_area, wanted, m_others, kSnapPixels / m_parts.view.extract().zoom);
  show(move.offset);
  showGuides(move.guides);
}

void MoveGesture::show(QPointF offset) {
  if (offset == m_offset) {
    return;
  }
  m_offset = offset;
  for (auto moved = m_actions.cbegin(); moved != m_actions.cend(); ++moved) {
    if (ActionBox* box = m_parts.scene.box(moved.key())) {
      box->setPos(moved.value() + offset);
    }
  }
  for (auto moved = m_notes.cbegin(); moved != m_notes.cend(); ++moved) {
    if (NoteBox* note = m_parts.scene.note(moved.key())) {
      note->setPos(moved.value() + offset);
    }
  }
  for (const LinkId id : m_links) {
    if (LinkCurve* curve = m_parts.scene.curve(id)) {
      curve->follow();
    }
  }
  m_target = linkBelow();
  m_parts.scene.setLitLink(m_target);
}

void MoveGesture::showGuides(const QList<QLineF>& guides) {
  for (std::size_t i = 0; i < m_guides.size(); ++i) {
    const auto line = static_cast<qsizetype>(i);
    m_guides[i]->setVisible(line < guides.size());
    if (line < guides.size()) {
      m_guides[i]->setLine(guides[line]);
    }
  }
}

LinkId MoveGesture::linkBelow() const {
  const ActionBox* box = m_parts.scene.box(m_insertable);
  return box == nullptr ? kNoId
                        : m_parts.scene.linkNear(box->body().center(), box->body().height() / 2);
}

void MoveGesture::end() {
  m_guides = {};
  m_parts.scene.setLitLink(kNoId);
}

void MoveGesture::finish(QPoint) {
  end();
  if (m_offset.isNull()) {
    return;
  }
  QHash<ActionId, QPointF> actions;
  for (auto moved = m_actions.cbegin(); moved != m_actions.cend(); ++moved) {
    if (m_parts.scene.graph().hasAction(moved.key())) {
      actions.insert(moved.key(), moved.value() + m_offset);
    }
  }
  QHash<NoteId, QPointF> notes;
  for (auto moved = m_notes.cbegin(); moved != m_notes.cend(); ++moved) {
    if (m_parts.scene.graph().hasNote(moved.key())) {
      notes.insert(moved.key(), moved.value() + m_offset);
    }
  }
  if (m_target == kNoId || actions.isEmpty()) {
    m_parts.commands.moveActions(actions, notes);
    return;
  }
  const QString text = CanvasView::tr("Insert '%1'").arg(m_parts.scene.graph().name(m_insertable));
  m_parts.commands.together(text, [this, &actions, &notes] {
    m_parts.commands.moveActions(actions, notes);
    m_parts.commands.moveIntoLink(m_insertable, m_target);
  });
}

void MoveGesture::cancel() {
  show({});
  end();
}

}  // namespace

std::unique_ptr<CanvasGesture> startMove(const GestureParts& parts, QPointF start) {
  return std::make_unique<MoveGesture>(parts, start);
}

}  // namespace kelvarin
