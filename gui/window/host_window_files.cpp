// How the window opens, saves and closes, what it asks before anything would be lost, and what it
// remembers of a graph.
#include <QBuffer>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLayout>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>

#include "gui/canvas/canvas_view.h"
#include "gui/dialogs/difference_dialog.h"
#include "gui/dialogs/file_questions.h"
#include "gui/dialogs/question.h"
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
  connect(&m_file, &DocumentFile::foundLock, this, &HostWindow::askAboutLock);
  connect(&m_file, &DocumentFile::saved, this, &HostWindow::afterSaving);
  connect(&m_file, &DocumentFile::saveFailed, this, [this](const QString&, const QString& why) {
    m_isSaving = false;
    askAboutFailedSave(this, why, [this](FailedSaveChoice choice) {
      if (choice == FailedSaveChoice::otherName) {
        saveAs();
      } else {
        m_afterSaving = nullptr;
      }
    });
  });
  connect(&m_file, &DocumentFile::saveFoundOtherFile, this, &HostWindow::askAboutOtherFile);
  connect(&m_file, &DocumentFile::changedOnDisk, this, [this](const QByteArray& onDisk) {
    m_onDisk = onDisk;
    showOtherFile(*m_notice);
  });
  connect(&m_file, &DocumentFile::goneFromDisk, this,
          [this](const QString& path) { showFileIsGone(*m_notice, path); });
  connect(m_notice, &InfoLine::linkActivated, this, [this](const QString& link) {
    const OtherFileChoice choice = otherFileChoice(link);
    if (choice != OtherFileChoice::compare) {
      m_notice->clear();
    }
    settleOtherFile(choice);
  });
}

void HostWindow::askAboutLock(const QString& path, const QString& holder) {
  kelvarin::askAboutLock(this, path, holder, [this, path](LockChoice choice) {
    if (choice == LockChoice::openCopy) {
      m_file.open(path, DocumentFile::OpenMode::copy);
    } else if (choice == LockChoice::openAnyway) {
      m_file.open(path, DocumentFile::OpenMode::shared);
    }
  });
}

void HostWindow::newGraph() {
  afterUnsavedChanges([this] {
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
  afterUnsavedChanges([this, path] { m_file.open(path); });
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
  afterUnsavedChanges([this] {
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
  if (!m_hasGraph || m_isSaving) {
    return;
  }
  commitTyping();
  if (m_file.path().isEmpty()) {
    saveAs();
  } else {
    startSaving(m_file.path(), DocumentFile::SaveMode::ifUnchangedOnDisk);
  }
}

void HostWindow::saveAs() {
  commitTyping();
  const QString path = askForGraphName(this, suggestedName());
  if (path.isEmpty()) {
    m_afterSaving = nullptr;
    return;
  }
  startSaving(path, DocumentFile::SaveMode::always);
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

void HostWindow::startSaving(const QString& path, DocumentFile::SaveMode mode) {
  m_isSaving = true;
  m_file.save(m_graph.document(), path, mode);
}

void HostWindow::afterSaving(const QByteArray& document) {
  m_isSaving = false;
  m_graph.markSaved(document, m_file.path());
  m_unsaved.begin(m_file.path(), document);
  m_notice->clear();
  noteRecentGraph(m_file.path());
  showTitle();
  statusBar()->showMessage(tr("Saved %1.").arg(m_file.path()));
  m_example->takeFilesTo(m_file.path());
  if (const auto next = std::exchange(m_afterSaving, nullptr)) {
    next();
  }
}

void HostWindow::askAboutOtherFile(const QByteArray& onDisk) {
  m_onDisk = onDisk;
  kelvarin::askAboutOtherFile(this, m_file.path(), [this](OtherFileChoice choice) {
    m_isSaving = false;
    if (choice == OtherFileChoice::keepMine) {
      startSaving(m_file.path(), DocumentFile::SaveMode::always);
      return;
    }
    m_afterSaving = nullptr;
    settleOtherFile(choice);
  });
}

void HostWindow::settleOtherFile(OtherFileChoice choice) {
  switch (choice) {
    case OtherFileChoice::keepMine:
      m_file.acceptDisk();
      return;
    case OtherFileChoice::loadTheirs:
      m_file.reload();
      return;
    case OtherFileChoice::compare:
      showDifference(m_onDisk, m_graph.document(), this);
      return;
    case OtherFileChoice::cancel:
      return;
  }
}

void HostWindow::afterUnsavedChanges(const std::function<void()>& next) {
  commitTyping();
  if (!m_hasGraph || !m_graph.isModified()) {
    next();
    return;
  }
  ask(this,
      {tr("The graph has changes that are not saved."),
       tr("Save them first?"),
       {{QMessageBox::Save, {}}, {QMessageBox::Discard, {}}, {QMessageBox::Cancel, {}}}},
      [this, next](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Save) {
          m_afterSaving = next;
          save();
        } else if (button == QMessageBox::Discard) {
          next();
        }
      });
}

void HostWindow::closeEvent(QCloseEvent* event) {
  commitTyping();
  if (!m_closesWithoutAsking && m_hasGraph && m_graph.isModified()) {
    event->ignore();
    afterUnsavedChanges([this] {
      m_closesWithoutAsking = true;
      close();
    });
    return;
  }
  keepState();
  m_unsaved.end();
  m_run.stop();
  m_properties->showAction(kNoId);
  event->accept();
}

void HostWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !m_isSaving) {
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
