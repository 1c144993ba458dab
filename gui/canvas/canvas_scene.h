// The drawn graph: an item for each action, link and note, which follow the signals of the graph.
//
// Used by: canvas_view.h and its gestures, minimap.h.
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QGraphicsScene>
#include <QHash>
#include <QTimer>

#include "gui/canvas/canvas_colors.h"
#include "gui/canvas/canvas_metrics.h"
#include "gui/canvas/heat_map.h"
#include "gui/canvas/pictures_of_types.h"
#include "gui/document/action_state.h"
#include "gui/document/edited_graph.h"

namespace kelvarin {

class ActionBox;
class LinkCurve;
class NoteBox;

// What is at a point of the canvas.
struct CanvasHit {
  enum class Kind { nothing, action, pin, link, note, noteCorner };

  Kind kind = Kind::nothing;
  PinRef pin;  // its `action` is the action's in both kinds
  LinkId link = kNoId;
  NoteId note = kNoId;
};

class CanvasScene : public QGraphicsScene {
  Q_OBJECT

 public:
  explicit CanvasScene(EditedGraph& graph, QObject* parent = nullptr);
  ~CanvasScene() override;

  EditedGraph& graph() const { return m_graph; }
  const CanvasMetrics& metrics() const { return m_metrics; }
  const CanvasColors& colors() const { return m_colors; }
  PicturesOfTypes& pictures() { return m_pictures; }
  // Draws everything anew where the look has changed.
  void setLook(const QPalette& palette, const QFont& font);

  // Null when absent.
  ActionBox* box(ActionId id) const { return m_boxes.value(id); }
  LinkCurve* curve(LinkId id) const { return m_curves.value(id); }
  NoteBox* note(NoteId id) const { return m_notes.value(id); }
  const QHash<ActionId, ActionBox*>& boxes() const { return m_boxes; }
  const QHash<NoteId, NoteBox*>& notes() const { return m_notes; }
  // Of everything that is drawn; null when there is nothing.
  QRectF contentArea() const;
  // Curves at this box are drawn anew from where the boxes are now.
  void followBox(ActionId id);

  // `tolerance` is a distance on the canvas that is near enough.
  CanvasHit hitAt(QPointF point, double tolerance) const;
  // The whole link that goes through the neighbourhood of the point; kNoId for none.
  LinkId linkNear(QPointF point, double tolerance) const;

  const GraphSelection& selection() const { return m_selection; }
  // What is not in the graph is left out.
  void setSelection(const GraphSelection& wanted);

  const ActionState& state(ActionId id) const;
  QString problem(ActionId id) const { return m_problems.value(id); }
  // -1 when unknown.
  long long rowsAt(const PinRef& pin) const;
  void setStates(const QHash<ActionId, ActionState>& states);
  void setProblems(const QHash<ActionId, QString>& problems);
  void setHeatMap(HeatMap map);
  const HeatScale& heatScale() const { return m_heat; }

  // While a link is drawn: pins that can take it are lit, all others are dimmed. A null function
  // ends it.
  void setPinFilter(std::function<bool(const PinRef&)> accepts);
  const std::function<bool(const PinRef&)>& pinFilter() const { return m_pinFilter; }
  void setLitPin(const PinRef& pin);
  const PinRef& litPin() const { return m_litPin; }
  void setLitLink(LinkId link);

  // While it is drawn for a document: nothing is marked that is no part of the graph.
  bool isPlain() const { return m_isPlain; }
  void setPlain(bool isPlain) { m_isPlain = isPlain; }

 signals:
  void selectionEdited();
  // Something came, went or moved.
  void contentChanged();
  // States, problems or the heat map.
  void resultsShown();
  void aboutToRebuild();

 private:
  void connectGraph();
  void rebuild();
  void addBox(ActionId id);
  void removeBox(ActionId id);
  void readBox(ActionId id);
  void moveBox(ActionId id);
  void addCurve(LinkId id);
  void removeCurve(LinkId id);
  void addNote(NoteId id);
  void removeNote(NoteId id);
  void showResults();

  EditedGraph& m_graph;
  CanvasMetrics m_metrics;
  CanvasColors m_colors;
  PicturesOfTypes m_pictures;
  QHash<ActionId, ActionBox*> m_boxes;
  QHash<LinkId, LinkCurve*> m_curves;
  QHash<NoteId, NoteBox*> m_notes;
  GraphSelection m_selection;
  QTimer m_selectionTimer;  // one signal for all that a command removes
  QHash<ActionId, ActionState> m_states;
  QHash<ActionId, QString> m_problems;
  HeatScale m_heat;
  std::function<bool(const PinRef&)> m_pinFilter;
  PinRef m_litPin;
  LinkId m_litLink = kNoId;
  bool m_isPlain = false;
};

}  // namespace kelvarin
