// One action on the canvas: a box with its picture, name, type, state and pins.
//
// Used by: canvas_scene.h.
#pragma once

#include <vector>

#include <QGraphicsItem>
#include <QStringList>

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/state_text.h"

namespace kelvarin {

class ActionBox final : public QGraphicsItem {
 public:
  enum { Type = UserType + 1 };

  ActionBox(CanvasScene& scene, ActionId id);

  int type() const override { return Type; }
  ActionId id() const { return m_id; }
  // Without pins and marks, on the canvas.
  QRectF body() const { return {pos(), m_size}; }
  int pinCount(bool isOutput) const { return static_cast<int>(pinNames(isOutput).size()); }
  QPointF pinPosition(int pin, bool isOutput) const;
  // The nearest pin within this distance; -1 in `pin` when there is none.
  PinRef pinNear(QPointF point, double distance) const;

  // Name, pins, and whatever else the graph has about it.
  void read();
  void setResult(const ActionState& state, const QString& problem, const ActionHeat& heat);
  void setSelected(bool isSelected);
  bool isSelected() const { return m_isSelected; }
  // The keyboard acts on it.
  void setHasFocusMark(bool has);

  QRectF boundingRect() const override { return m_bounds; }
  void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

 private:
  const QStringList& pinNames(bool isOutput) const { return isOutput ? m_outputs : m_inputs; }
  void measure();
  void cutTexts();
  QColor fill() const;
  QPen outline(double scale) const;
  void paintSmall(QPainter& painter, double scale) const;
  void paintBody(QPainter& painter, double scale) const;
  void paintTexts(QPainter& painter, double scale);
  void paintFarName(QPainter& painter, double scale) const;
  void paintName(QPainter& painter) const;
  void paintStatus(QPainter& painter) const;
  void paintPins(QPainter& painter, double scale) const;
  void paintFarPins(QPainter& painter) const;
  void paintPin(QPainter& painter, const PinRef& pin) const;
  void paintPinName(QPainter& painter, int pin, bool isOutput) const;
  bool takesDrawnLink() const;

  CanvasScene& m_scene;
  const ActionId m_id;
  QString m_name;
  QString m_typeName;
  QStringList m_inputs;  // the pins' names
  QStringList m_outputs;
  bool m_isDisabled = false;
  bool m_canRun = true;
  QSizeF m_size;
  QRectF m_bounds;
  bool m_hasStatus = false;  // what follows is up to date
  StatusLine m_status;
  bool m_hasTexts = false;  // the three that follow are up to date
  QStringList m_nameLines;
  QString m_shownType;
  QString m_shownStatus;
  ActionState m_state;
  QString m_problem;
  ActionHeat m_heat;
  bool m_isSelected = false;
  bool m_hasFocusMark = false;
};

}  // namespace kelvarin
