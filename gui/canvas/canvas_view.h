// The canvas: actions as boxes with pins, links, notes; drawn, selected, moved, linked and deleted
// with mouse and keys.
//
// It acts on every key that no shortcut of the window takes: arrows walk along links and among
// siblings (Shift selects on the way, Ctrl moves what is selected), Alt and an arrow go to a link,
// Tab walks in the order of reading and leaves the canvas at the end, Ctrl+K draws a link. All
// changes are commands of GraphCommands, and it shows what EditedGraph signals.
// Threads: the user-interface thread.
#pragma once

#include <memory>
#include <optional>

#include <QGraphicsView>
#include <QTimer>

#include "gui/canvas/heat_map.h"
#include "gui/document/action_state.h"
#include "gui/document/graph_commands.h"

namespace kelvarin {

class CanvasGesture;
class CanvasScene;
class DirectEditor;
class Theme;

// What a user sees again after closing and opening a graph.
struct CanvasExtract {
  double zoom = 1.0;  // 0.1 to 4
  QPointF centre;
};

inline constexpr double kMinimumZoom = 0.1;
inline constexpr double kMaximumZoom = 4.0;

class CanvasView : public QGraphicsView {
  Q_OBJECT

 public:
  CanvasView(GraphCommands& commands, Theme& theme, QWidget* parent = nullptr);
  ~CanvasView() override;

  GraphSelection selection() const;
  void setSelection(const GraphSelection& selection);
  // The one selected action; kNoId for none or several.
  ActionId currentAction() const;
  // Selects it and makes it visible.
  void showAction(ActionId action);
  void showLink(LinkId link);
  // The same for one item of any kind.
  void showOnly(const GraphSelection& item);
  // The part of the canvas that the view shows.
  QRectF seenArea() const;
  // Of every box, for layouts.
  QHash<ActionId, QSizeF> boxSizes() const;
  PinSpacing pinSpacing() const;
  // Where quick add and paste go when nobody points at anything.
  QPointF pointOfInterest() const;

  CanvasExtract extract() const;
  void setExtract(const CanvasExtract& extract);
  void zoomBy(double factor);
  void zoomToAll();
  void zoomToSelection();

  // Called at most 10 times a second in a run.
  void setStates(const QHash<ActionId, ActionState>& states);
  void setHeatMap(HeatMap map);
  // Columns of links that are not what their readers expect, and so on: shown as a mark on the box.
  void setProblems(const QHash<ActionId, QString>& problems);

  // The whole canvas in the colours of the theme.
  QByteArray asSvg() const;
  QImage asImage(double scale) const;

  CanvasScene& canvasScene() const { return *m_scene; }

 public slots:
  void deleteSelection();
  void deleteSelectionClosingGaps();
  void copySelection();
  void cutSelection();
  void paste();
  void duplicateSelection();
  void selectAll();
  // An action's name or a note's text, where it stands.
  void renameCurrent();
  void toggleDisabled();
  void addNoteHere();
  void setNoteColor(const QColor& color);
  void alignSelection(Qt::Edge edge);
  void openCurrent();
  void previewCurrent();
  // From the selected action, by keys alone; again: from its next output pin.
  void drawLinkByKeys();

 signals:
  void selectionChanged();
  // Double click or Enter.
  void openWanted(kelvarin::ActionId action);
  // Ctrl+Enter on an action, or a click on a link or pin in the menu.
  void previewWanted(const kelvarin::PinRef& pin);
  // A link was dropped on empty canvas, or letters were typed: the palette opens there with what
  // fits. `pin.action` is kNoId where nothing is to be linked. `typed` begins the search.
  void quickAddWanted(const kelvarin::PinRef& pin, QPointF scenePosition, QPoint globalPosition,
                      const QString& typed);
  void filesDropped(const QStringList& files, QPointF scenePosition);
  void contextMenuWanted(QPoint globalPosition);
  // For the status bar: why a pin cannot take the link that is being drawn; empty: nothing to say.
  void hint(const QString& text);
  void extractChanged();

 protected:
  void drawBackground(QPainter* painter, const QRectF& area) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  // What was pressed, until the pointer has moved far enough for a gesture.
  struct Press;
  // A link that is drawn by keys: where it begins, and the pins that can take it.
  struct LinkByKeys {
    PinRef start;
    QList<PinRef> targets;
    qsizetype current = 0;
  };

  void connectScene();
  void updateReach();
  void scrollUntilAt(QPointF scenePoint, QPointF viewportPoint);
  void zoomAbout(double zoom, QPointF viewportPoint);
  void showArea(const QRectF& area);
  double reachOfPointer() const;  // on the canvas
  EditedGraph& graph() const { return m_commands.graph(); }

  void pressAt(QPoint position, Qt::KeyboardModifiers modifiers);
  void select(const GraphSelection& hit, bool toggles);
  void startGesture();
  void moveGestureTo(QPoint position, Qt::KeyboardModifiers modifiers);
  void endGesture();
  void cancelGesture();
  void scrollAtEdge();
  void showCursorAt(QPoint position);
  bool showToolTip(QHelpEvent& event);
  bool pinch(QEvent& event);

  void describeKeys();
  bool actOnKey(QKeyEvent& event);
  bool actOnArrow(QKeyEvent& event);
  void walk(int arrowKey, bool extends);
  bool walkToLink(int arrowKey);
  void moveByKey(int arrowKey);
  QList<GraphSelection> tabOrder() const;
  bool quickAddByLetter(const QKeyEvent& event);
  void showLinkByKeys(int step);
  void actOnLinkKey(const QKeyEvent& event);
  void setFocusAction(ActionId action);
  void showFocusMark(bool shows);
  void announceFocus();

  GraphCommands& m_commands;
  QPointF m_centre;  // of what is seen, exactly as it was asked for
  bool m_isShowingExtract = false;
  CanvasScene* m_scene;
  DirectEditor* m_directEditor;
  std::unique_ptr<Press> m_press;
  std::unique_ptr<CanvasGesture> m_gesture;
  std::optional<LinkByKeys> m_linkByKeys;
  std::optional<QPoint> m_panned;  // where the pointer was
  bool m_isSpacePressed = false;
  ActionId m_focusAction = kNoId;  // from which the keyboard walks on
  LinkId m_dropLink = kNoId;
  QTimer m_reachTimer;
  QTimer m_edgeTimer;
};

}  // namespace kelvarin
