// The tour of the flights example: draw, see rows, change a formula, run, find why a row is
// filtered.
//
// Used by: host_window.h.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include "gui/tour/tour.h"

class QDockWidget;

namespace kelvarin {

class CanvasView;
class EditedGraph;
class PreviewPanel;

// What the tour points at.
struct TourParts {
  const EditedGraph& graph;
  CanvasView& canvas;
  PreviewPanel& preview;
  QDockWidget& previewDock;
  QDockWidget& propertiesDock;
  QWidget& runButton;
};

// Whether the open graph has the actions that the tour is about.
bool isFlightsExample(const EditedGraph& graph);
std::vector<TourStep> flightsTour(const TourParts& parts);

}  // namespace kelvarin
