// One note on the canvas: a coloured box with a text, behind everything else.
//
// Used by: canvas_scene.h.
#pragma once

#include <QGraphicsItem>

#include "gui/canvas/canvas_scene.h"

namespace kelvarin {

inline constexpr QSizeF kMinimumNoteSize(48.0, 32.0);

// Paper that notes can have; the first one is that of a new note.
QList<QColor> noteColors();

class NoteBox final : public QGraphicsItem {
 public:
  enum { Type = UserType + 3 };

  NoteBox(CanvasScene& scene, NoteId id);

  int type() const override { return Type; }
  NoteId id() const { return m_id; }
  QRectF body() const { return {pos(), m_size}; }
  // The text's part of it.
  QRectF textArea() const;
  // Where it is taken to be resized, on the canvas.
  QRectF corner() const;
  void read();
  void setSize(const QSizeF& size);
  void setSelected(bool isSelected);
  // While its text is edited in place.
  void setShowsText(bool shows);

  QRectF boundingRect() const override;
  void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

 private:
  CanvasScene& m_scene;
  const NoteId m_id;
  QSizeF m_size;
  QString m_text;
  QColor m_color;
  bool m_isSelected = false;
  bool m_showsText = true;
};

}  // namespace kelvarin
