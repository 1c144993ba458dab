#include "gui/canvas/note_box.h"

#include <algorithm>

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace kelvarin {

namespace {

constexpr double kPadding = 8.0;
constexpr double kCornerSize = 14.0;
constexpr double kTextScale = 0.4;

}  // namespace

QList<QColor> noteColors() {
  return {QColor(0xFF, 0xF3, 0xBF), QColor(0xD3, 0xF9, 0xD8), QColor(0xD0, 0xEB, 0xFF),
          QColor(0xFF, 0xDE, 0xEB), QColor(0xE5, 0xDB, 0xFF), QColor(0xE9, 0xEC, 0xEF)};
}

NoteBox::NoteBox(CanvasScene& scene, NoteId id) : m_scene(scene), m_id(id) {
  setZValue(0);
  read();
}

void NoteBox::read() {
  prepareGeometryChange();
  const DrawnNote& note = m_scene.graph().note(m_id);
  setPos(note.rectangle.topLeft());
  m_size = note.rectangle.size().expandedTo(kMinimumNoteSize);
  m_text = note.text;
  m_color = note.colour.isValid() ? note.colour : noteColors().front();
  update();
}

QRectF NoteBox::textArea() const {
  return body().marginsRemoved({kPadding, kPadding, kPadding, kPadding});
}

QRectF NoteBox::corner() const {
  return {pos() + QPointF(m_size.width() - kCornerSize, m_size.height() - kCornerSize),
          QSizeF(kCornerSize, kCornerSize)};
}

void NoteBox::setSize(const QSizeF& size) {
  prepareGeometryChange();
  m_size = size.expandedTo(kMinimumNoteSize);
  update();
}

void NoteBox::setSelected(bool isSelected) {
  if (m_isSelected != isSelected) {
    m_isSelected = isSelected;
    update();
  }
}

void NoteBox::setShowsText(bool shows) {
  m_showsText = shows;
  update();
}

QRectF NoteBox::boundingRect() const {
  return QRectF(QPointF(), m_size).adjusted(-4, -4, 4, 4);
}

void NoteBox::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
  const double scale =
      QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
  const QColor ink = textColorOn(m_color);
  const double line = std::max(1.0, 1.0 / scale);
  painter->setPen(m_isSelected && !m_scene.isPlain() ? QPen(m_scene.colors().accent, 2.5 * line)
                                                     : QPen(mixed(m_color, ink, 0.25), line));
  painter->setBrush(m_color);
  painter->drawRect(QRectF(QPointF(), m_size));
  if (scale < kTextScale) {
    return;
  }
  if (!m_scene.isPlain()) {
    painter->setPen(QPen(mixed(m_color, ink, 0.45), 1));
    const QPointF end(m_size.width() - 3, m_size.height() - 3);
    for (const double length : {4.0, 8.0}) {
      painter->drawLine(end - QPointF(length, 0), end - QPointF(0, length));
    }
  }
  if (m_showsText) {
    painter->setFont(m_scene.metrics().textFont());
    painter->setPen(ink);
    painter->drawText(textArea().translated(-pos()), Qt::AlignLeft | Qt::TextWordWrap, m_text);
  }
}

}  // namespace kelvarin
