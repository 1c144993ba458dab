// The canvas: actions as boxes with pins, links, notes; drawn, selected, moved, linked and deleted
// with mouse and keys.
//
// Threads: the user-interface thread.
#pragma once

#include <optional>

#include <QGraphicsView>

#include "gui/document/action_state.h"
#include "gui/document/graph_commands.h"

namespace kelvarin {

class CanvasScene;
class Theme;

// What a user sees again after closing and opening a graph.
struct CanvasExtract {
  double zoom = 1.0;  // 0.1 to 4
  QPointF centre;
};

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

  CanvasExtract extract() const;
  void setExtract(const CanvasExtract& extract);
  void zoomBy(double factor);
  void zoomToAll();
  void zoomToSelection();

  // Called at most 10 times a second in a run.
  void setStates(const QHash<ActionId, ActionState>& states);
  void setShowsHeatMap(bool shows);
  // Columns of links that are not what their readers expect, and so on: shown as a mark on the box.
  void setProblems(const QHash<ActionId, QString>& problems);

  QByteArray asSvg() const;
  QImage asImage(double scale) const;

 public slots:
  void deleteSelection();
  void deleteSelectionClosingGaps();
  void copySelection();
  void cutSelection();
  void paste();
  void duplicateSelection();
  void renameCurrent();
  void toggleDisabled();
  void addNoteHere();
  void alignSelection(Qt::Edge edge);

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
};

}  // namespace kelvarin
