#include "gui/window/flights_tour.h"

#include <QCoreApplication>
#include <QDockWidget>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_view.h"
#include "gui/preview/preview_panel.h"

namespace kelvarin {

namespace {

const QString kCalculator = QStringLiteral("speed and delays");
const QString kFilter = QStringLiteral("late?");

class Texts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::FlightsTour)
};

// The box of an action, as far as the canvas shows it.
QRect boxOf(const TourParts& parts, const QString& name) {
  const ActionBox* box = parts.canvas.canvasScene().box(parts.graph.idOf(name));
  if (box == nullptr) {
    return {};
  }
  const QWidget& viewport = *parts.canvas.viewport();
  const QRect seen =
      parts.canvas.mapFromScene(box->body()).boundingRect().intersected(viewport.rect());
  return seen.isEmpty() ? QRect() : partOfWindow(viewport, seen);
}

// A panel that floats is a window of its own.
QRect dockOf(const QDockWidget& dock) {
  return dock.isFloating() ? QRect() : partOfWindow(dock, dock.rect());
}

void select(const TourParts& parts, const QString& name) {
  if (const ActionId action = parts.graph.idOf(name); action != kNoId) {
    parts.canvas.showAction(action);
  }
}

void raise(QDockWidget& dock) {
  dock.show();
  dock.raise();
}

TourStep drawing(const TourParts& parts) {
  return {Texts::tr("Draw"),
          Texts::tr("This graph reads flights, computes their speed, and writes late flights and "
                    "others apart. Rows go along the links, from left to right. To add an action, "
                    "select the one in front of it, type the first letters of its name and press "
                    "Enter; or drag it here from the list of actions."),
          [parts] { select(parts, kCalculator); }, [parts] { return boxOf(parts, kCalculator); }};
}

TourStep seeingRows(const TourParts& parts) {
  return {
      Texts::tr("See the rows"),
      Texts::tr("Here are the first rows that leave the selected action, and what each column "
                "has in it. Nothing is written for that. Select another action, or double-click "
                "one of its pins, to see the rows there."),
      [parts] {
        select(parts, kCalculator);
        raise(parts.previewDock);
      },
      [parts] { return dockOf(parts.previewDock); }};
}

TourStep changingAFormula(const TourParts& parts) {
  return {Texts::tr("Change a formula"),
          Texts::tr("What the selected action does is set here. Change the formula: names complete "
                    "while you type, and its values in the first rows are below it at once. "
                    "Everything can be undone."),
          [parts] {
            select(parts, kCalculator);
            raise(parts.propertiesDock);
          },
          [parts] { return dockOf(parts.propertiesDock); }};
}

TourStep running(const TourParts& parts) {
  return {Texts::tr("Run"),
          Texts::tr("Run, or F5, computes all rows and writes the files. Counts grow on the links "
                    "meanwhile. A step that fails turns red, and its message is in the log."),
          nullptr, [parts] { return partOfWindow(parts.runButton, parts.runButton.rect()); }};
}

TourStep findingWhy(const TourParts& parts) {
  return {Texts::tr("Find why a row is filtered"),
          Texts::tr("These rows reach the filter '%1'. Right-click one and choose \"Step to this "
                    "row\": the formula is computed for it part by part, at the right, and you see "
                    "why the row stays or goes.")
              .arg(kFilter),
          [parts] {
            select(parts, kFilter);
            raise(parts.previewDock);
            if (const ActionId filter = parts.graph.idOf(kFilter); filter != kNoId) {
              parts.preview.showPin({filter, 0, false});
            }
          },
          [parts] { return dockOf(parts.previewDock); }};
}

}  // namespace

bool isFlightsExample(const EditedGraph& graph) {
  return graph.idOf(kCalculator) != kNoId && graph.idOf(kFilter) != kNoId;
}

std::vector<TourStep> flightsTour(const TourParts& parts) {
  return {drawing(parts), seeingRows(parts), changingAFormula(parts), running(parts),
          findingWhy(parts)};
}

}  // namespace kelvarin
