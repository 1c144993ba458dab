// How the window opens examples, and the tour of one of them.
#include <utility>

#include <QStatusBar>
#include <QToolBar>

#include "gui/canvas/canvas_view.h"
#include "gui/tour/tour.h"
#include "gui/window/example_copy.h"
#include "gui/window/examples.h"
#include "gui/window/flights_tour.h"
#include "gui/window/host_window.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

const QString kSaveLink = QStringLiteral("saveExample");

}  // namespace

void HostWindow::openExample(const QString& path) {
  m_saving.afterUnsavedChanges([this, path] {
    m_exampleToOpen = path;
    m_file.open(path, DocumentFile::OpenMode::copy);
  });
}

void HostWindow::startTour() {
  if (m_hasGraph && isFlightsExample(m_graph)) {
    beginTour();
    return;
  }
  const QString example = tourExample();
  if (example.isEmpty()) {
    showNotice(tr("The examples are not installed, and the tour is of one of them."));
    return;
  }
  m_saving.afterUnsavedChanges([this, example] {
    m_startsTour = true;
    m_exampleToOpen = example;
    m_file.open(example, DocumentFile::OpenMode::copy);
  });
}

void HostWindow::beginTour() {
  if (m_tour == nullptr) {
    m_tour =
        new Tour(*this, flightsTour({m_graph, *m_canvas, *m_preview, *m_previewDock,
                                     *m_propertiesDock, *m_bar->widgetForAction(m_runAction)}));
    connect(m_tour, &Tour::left, this, [this] { m_canvas->setFocus(); });
  }
  m_tour->start();
}

void HostWindow::connectExample() {
  connect(this, &HostWindow::graphShown, this, [this] {
    const bool isWanted = std::exchange(m_startsTour, false) && isFlightsExample(m_graph);
    if (m_tour != nullptr) {
      m_tour->leave();
    }
    if (isWanted) {
      beginTour();
    }
  });
  connect(m_notice, &InfoLine::linkActivated, this, [this](const QString& link) {
    if (link == kSaveLink) {
      saveAs();
    }
  });
  connect(m_example, &ExampleCopy::folderIsReadOnly, this, [this](const QString& folder) {
    m_notice->setMessage(
        Severity::information,
        tr("This example lies in %1, where nothing can be written. Before you run it, save it in a "
           "folder of your own; the data that it reads is copied with it.")
            .arg(folder),
        {{kSaveLink, tr("Save as ...")}, {QStringLiteral("close"), tr("Close")}});
  });
  connect(m_example, &ExampleCopy::filesTaken, this, [this](const QStringList& files) {
    statusBar()->showMessage(tr("Saved %1, and copied %2.").arg(m_file.path(), files.join(u", ")));
  });
  connect(m_example, &ExampleCopy::failed, this, &HostWindow::showNotice);
}

}  // namespace kelvarin
