// How the window opens, restores, saves and closes, and what it remembers of a graph.
#include <QBuffer>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLayout>
#include <QMimeData>
#include <QStatusBar>

#include "gui/canvas/canvas_view.h"
#include "gui/dialogs/file_questions.h"
#include "gui/properties/property_panel.h"
#include "gui/recovery/recovery_offer.h"
#include "gui/recovery/restored_texts.h"
#include "gui/window/example_copy.h"
#include "gui/window/examples.h"
#include "gui/window/host_window.h"
#include "gui/window/panel_layout.h"
#include "gui/window/start_page.h"
#include "gui/window/window_state.h"
#include "host/contract/host_session.h"
#include "host/files/replace_file.h"
#include "host/widgets/info_line.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

namespace {

constexpr double kPictureScale = 2.0;

}  // namespace

void HostWindow::connectFile() {
  connect(m_start, &StartPage::newWanted, this, &HostWindow::newGraph);
  connect(m_start, &StartPage::openWanted, this, &HostWindow::chooseFileToOpen);
  connect(m_start, &StartPage::graphWanted, this, &HostWindow::open);
  connect(m_start, &StartPage::exampleWanted, this, &HostWindow::openExample);
  connect(m_start, &StartPage::tourWanted, this, &HostWindow::startTour);
  connect(m_recovery, &RecoveryOffer::restoreWanted, this, &HostWindow::restoreGraph);
  connect(&m_unsaved, &UnsavedWork::failed, this,
          [this](const QString& why) { showNotice(noRecoveryText(why)); });
  m_file.setPreparation(
      [&catalogue = m_graph.catalogue(), settings = m_settings, session = HostSession::current()](
          const QString& path, const QByteArray& document) {
        const HostSession::Scope scope(session);
        return std::make_shared<PreparedGraph>(document, path, catalogue, settings);
      });
  connect(&m_file, &DocumentFile::opened, this,
          [this](const QString& path, const QByteArray& document,
                 const std::shared_ptr<PreparedGraph>& prepared) {
            showDocument(path, document, *prepared);
          });
  connect(&m_file, &DocumentFile::openFailed, this,
          [this](const QString& path, const std::vector<GraphError>& faults) {
            forgetRecentGraph(path);
            m_exampleToOpen.clear();
            showPage();
            showNotice(faults.front().text());
            emit graphShown();
          });
  connect(&m_saving, &GraphSaving::commitWanted, this, &HostWindow::commitTyping);
  connect(&m_saving, &GraphSaving::saved, this, &HostWindow::noteSaved);
}

void HostWindow::newGraph() {
  m_saving.afterUnsavedChanges([this] {
    keepState();
    m_file.forget();
    m_graph.load(QByteArrayLiteral("<KelvarinGraph version='1.0'>\n</KelvarinGraph>\n"), {});
    m_hasGraph = true;
    m_example->begin({});
    m_unsaved.begin({}, {});
    showPage();
    m_canvas->zoomToAll();
    m_canvas->setFocus();
    emit graphShown();
  });
}

void HostWindow::open(const QString& path) {
  m_saving.afterUnsavedChanges([this, path] { m_file.open(path); });
}

void HostWindow::chooseFileToOpen() {
  const QString path = QFileDialog::getOpenFileName(
      this, tr("Open a graph"), QFileInfo(m_file.path()).absolutePath(), graphFileFilter());
  if (!path.isEmpty()) {
    open(path);
  }
}

void HostWindow::showDocument(const QString& path, const QByteArray& document,
                              PreparedGraph& prepared) {
  keepState();
  m_notice->clear();
  m_services.forgetColumns();
  m_graph.load(std::move(prepared));
  m_hasGraph = true;
  m_example->begin(path == m_exampleToOpen ? path : QString());
  m_exampleToOpen.clear();
  showPage();
  m_unsaved.begin(m_file.path(), document);
  if (!m_file.path().isEmpty()) {
    noteRecentGraph(path);
  }
  restoreState();
  m_canvas->setFocus();
  for (const GraphError& fault : m_graph.faults()) {
    m_services.log(LogLevel::error, fault.text(), nullptr);
  }
  emit graphShown();
}

void HostWindow::offerRecovery() {
  m_recovery->search();
}

// The graph counts as changed, whatever its file has.
void HostWindow::restoreGraph() {
  m_saving.afterUnsavedChanges([this] {
    std::unique_ptr<RecoveryFile> file = m_recovery->take();
    if (file == nullptr) {
      return;
    }
    const RecoveryRecord record = file->found();
    keepState();
    m_notice->clear();
    m_services.forgetColumns();
    if (!m_graph.load(record.document, record.graphFile, m_settings)) {
      showNotice(tr("%1 cannot be restored: its recovery file is %2")
                     .arg(shownName(record), file->path()));
      return;
    }
    m_graph.markSaved({}, record.graphFile);
    m_file.resume(record.graphFile, record.savedDigest);
    m_hasGraph = true;
    m_example->begin({});
    m_unsaved.resume(std::move(file));
    showPage();
    restoreState();
    showTyped(record);
    emit graphShown();
  });
}

// What no field takes is shown, to be copied.
void HostWindow::showTyped(const RecoveryRecord& record) {
  const ActionId action = m_graph.idOf(record.action);
  if (action != kNoId) {
    select(action, false);
  }
  if (record.typed.isEmpty()) {
    m_canvas->setFocus();
    return;
  }
  if (const QString left = restoreTexts(record, *m_properties); !left.isEmpty()) {
    showNotice(left);
  }
}

void HostWindow::save() {
  if (m_hasGraph) {
    m_saving.save();
  }
}

void HostWindow::saveAs() {
  m_saving.saveAs();
}

// Of a copy, where its original lies.
QString HostWindow::suggestedName() const {
  const QString& origin = m_graph.graph().file;
  if (!m_file.path().isEmpty()) {
    return m_file.path();
  }
  if (m_example->isOpen()) {
    return QDir::home().filePath(QFileInfo(origin).fileName());
  }
  return origin.isEmpty() ? QDir::current().filePath(tr("graph"))
                          : QFileInfo(origin).dir().filePath(graphName());
}

void HostWindow::noteSaved(const QByteArray& document) {
  m_unsaved.begin(m_file.path(), document);
  noteRecentGraph(m_file.path());
  showTitle();
  statusBar()->showMessage(tr("Saved %1.").arg(m_file.path()));
  m_example->takeFilesTo(m_file.path());
}

void HostWindow::closeEvent(QCloseEvent* event) {
  if (!m_saving.mayClose()) {
    event->ignore();
    return;
  }
  keepState();
  m_unsaved.end();
  m_run.stop();
  m_properties->showAction(kNoId);
  event->accept();
}

void HostWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !m_saving.isSaving()) {
    m_file.compareWithDisk();
  }
  QMainWindow::changeEvent(event);
}

void HostWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) {
    event->acceptProposedAction();
  }
}

// A graph is opened; data files are read, in a new graph where none is open.
void HostWindow::dropEvent(QDropEvent* event) {
  QStringList files;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) {
      files += url.toLocalFile();
    }
  }
  event->acceptProposedAction();
  m_drops.take(files, m_canvas->pointOfInterest());
}

void HostWindow::exportCanvas() {
  const QString path = QFileDialog::getSaveFileName(this, tr("Export the canvas"),
                                                    QFileInfo(m_file.path()).absolutePath() + u'/' +
                                                        QFileInfo(graphName()).completeBaseName() +
                                                        QStringLiteral(".svg"),
                                                    tr("Pictures (*.svg *.png)"));
  if (path.isEmpty()) {
    return;
  }
  QByteArray picture;
  if (path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
    QBuffer buffer(&picture);
    buffer.open(QIODevice::WriteOnly);
    m_canvas->asImage(kPictureScale).save(&buffer, "PNG");
  } else {
    picture = m_canvas->asSvg();
  }
  if (const auto outcome = replaceFile(path, picture); outcome) {
    statusBar()->showMessage(tr("Saved %1.").arg(path));
  } else {
    showNotice(tr("%1 cannot be written: %2").arg(path, outcome.error()));
  }
}

void HostWindow::keepState() {
  const CanvasExtract extract = m_canvas->extract();
  const ActionId current = m_canvas->currentAction();
  keepWindowState(m_hasGraph ? m_graph.graph().file : QString(),
                  {saveGeometry(), m_hidden.isEmpty() ? QMainWindow::saveState() : m_hidden,
                   extract.zoom, extract.centre.x(), extract.centre.y(),
                   current == kNoId ? QString() : m_graph.name(current)});
}

void HostWindow::restoreState() {
  const WindowState state = windowStateOf(m_graph.graph().file);
  if (!state.panels.isEmpty()) {
    restoreGeometry(state.geometry);
    if (m_hidden.isEmpty()) {
      restorePanels(*this, state.panels);
    } else {
      m_hidden = state.panels;
    }
  }
  if (!m_hasGraph) {
    return;
  }
  if (const ActionId action = m_graph.idOf(state.currentAction); action != kNoId) {
    select(action, false);
  }
  arrangeUnplaced();
  centralWidget()->layout()->activate();  // lines above the canvas may have come or gone
  if (state.zoom > 0.0) {
    m_canvas->setExtract({state.zoom, {state.centreX, state.centreY}});
  } else {
    m_canvas->zoomToAll();
  }
}

void HostWindow::arrangeUnplaced() {
  QSet<ActionId> unplaced;
  for (const ActionId action : m_graph.actions()) {
    if (!m_graph.hasPosition(action)) {
      unplaced += action;
    }
  }
  if (!unplaced.isEmpty()) {
    m_arrangesUnasked = true;
    m_arrangement.start(m_graph, unplaced, m_canvas->boxSizes(), m_canvas->pinSpacing());
  }
}

void HostWindow::showExamples() {
  for (const Example& example : findExamples(m_graph.catalogue(), m_theme)) {
    m_start->addExample(example.path, example.title, example.description, example.picture);
  }
}

}  // namespace kelvarin
