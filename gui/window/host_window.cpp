#include "gui/window/host_window.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "gui/canvas/canvas_view.h"
#include "gui/canvas/empty_canvas.h"
#include "gui/canvas/heat_legend.h"
#include "gui/canvas/minimap.h"
#include "gui/dialogs/text_dialogs.h"
#include "gui/log/log_model.h"
#include "gui/log/log_panel.h"
#include "gui/palette/palette_panel.h"
#include "gui/preview/preview_panel.h"
#include "gui/properties/property_panel.h"
#include "gui/properties/shortcut_precedence.h"
#include "gui/properties/undo_keys.h"
#include "gui/recovery/recovery_offer.h"
#include "gui/run/disk_question_line.h"
#include "gui/run/run_report_panel.h"
#include "gui/window/canvas_menus.h"
#include "gui/window/example_copy.h"
#include "gui/window/find_dock.h"
#include "gui/window/log_title.h"
#include "gui/window/panel_layout.h"
#include "gui/window/problem_walk.h"
#include "gui/window/start_page.h"
#include "gui/window/tab_order.h"
#include "host/widgets/info_line.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

namespace {

constexpr QSize kUsualSize(1280, 800);

}  // namespace

HostWindow::HostWindow(GraphCommands& commands, EditServices& services, Theme& theme,
                       std::vector<ParameterOverride> settings)
    : m_commands(commands),
      m_graph(commands.graph()),
      m_services(services),
      m_theme(theme),
      m_settings(std::move(settings)),
      m_run(m_graph, services),
      m_columns(m_graph, services),
      m_drops(commands),
      m_pages(new QStackedWidget),
      m_start(new StartPage),
      m_canvas(new CanvasView(commands, theme)),
      m_recovery(new RecoveryOffer),
      m_notice(new InfoLine),
      m_saving(*this, m_graph, m_file, *m_notice, [this] { return suggestedName(); }),
      m_diskQuestion(new DiskQuestionLine(m_run)),
      m_palette(new PalettePanel(m_graph.catalogue())),
      m_properties(new PropertyPanel(commands)),
      m_preview(new PreviewPanel(m_graph, services)),
      m_log(new LogPanel),
      m_report(new RunReportPanel(m_run)),
      m_unsaved(commands, *m_properties),
      m_find(new FindDock(commands)),
      m_canvasMenus(new CanvasMenus(*m_canvas, this)),
      m_problems(new ProblemWalk(m_graph, m_columns, m_run, m_log->model(), this)),
      m_example(new ExampleCopy(m_graph, this)),
      m_outcome(new QLabel) {
  setAcceptDrops(true);
  setDockOptions(AllowTabbedDocks | AllowNestedDocks);
  makeCentre();
  makeDocks();
  makeMenus();
  connectGraph();
  connectWork();
  connectCanvas();
  connectPreview();
  connectFinding();
  connectDrops();
  connectFile();
  connectExample();
  new ShortcutPrecedence(*m_propertiesDock, *this);
  new UndoKeys(*this);
  resize(kUsualSize);
  restoreState();
  showPage();
  showRunState();
}

HostWindow::~HostWindow() {
  m_run.stop();
  m_properties->showAction(kNoId);
}

void HostWindow::makeCentre() {
  new Minimap(*m_canvas);
  new EmptyCanvas(*m_canvas);
  new HeatLegend(*m_canvas);
  m_pages->addWidget(m_start);
  m_pages->addWidget(m_canvas);
  auto* centre = new QWidget;
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (InfoLine* line : std::initializer_list<InfoLine*>{m_recovery, m_notice, m_diskQuestion}) {
    line->setContentsMargins(12, 8, 12, 8);
  }
  layout->addWidget(m_recovery);
  layout->addWidget(m_notice);
  layout->addWidget(m_diskQuestion);
  layout->addWidget(m_pages, 1);
  setCentralWidget(centre);
  statusBar()->setSizeGripEnabled(false);  // from the start, so that its first text moves nothing
}

QDockWidget* HostWindow::newDock(const QString& name, const QString& title, QWidget* content,
                                 Qt::DockWidgetArea area) {
  auto* dock = new QDockWidget(title, this);
  dock->setObjectName(name);
  dock->setWidget(content);
  addDockWidget(area, dock);
  return dock;
}

void HostWindow::makeDocks() {
  setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
  setTabPosition(Qt::BottomDockWidgetArea, QTabWidget::North);
  m_paletteDock =
      newDock(QStringLiteral("palette"), tr("Actions"), m_palette, Qt::LeftDockWidgetArea);
  m_propertiesDock = newDock(QStringLiteral("properties"), tr("Properties"), m_properties,
                             Qt::RightDockWidgetArea);
  m_previewDock =
      newDock(QStringLiteral("preview"), tr("Preview"), m_preview, Qt::BottomDockWidgetArea);
  m_logDock = newDock(QStringLiteral("log"), tr("Log"), m_log, Qt::BottomDockWidgetArea);
  new LogTitle(*m_logDock, m_log->model());
  m_reportDock =
      newDock(QStringLiteral("report"), tr("Run report"), m_report, Qt::BottomDockWidgetArea);
  tabifyDockWidget(m_previewDock, m_logDock);
  tabifyDockWidget(m_logDock, m_reportDock);
  addDockWidget(Qt::BottomDockWidgetArea, m_find);
  tabifyDockWidget(m_reportDock, m_find);
  m_find->hide();
  m_previewDock->raise();
  // As many characters as their texts need, as far as the canvas keeps enough.
  const int character = fontMetrics().averageCharWidth();
  resizeDocks({m_paletteDock, m_propertiesDock},
              {std::min(37 * character, kUsualSize.width() / 4),
               std::min(80 * character, kUsualSize.width() * 2 / 5)},
              Qt::Horizontal);
  resizeDocks({m_previewDock}, {288}, Qt::Vertical);
}

void HostWindow::connectGraph() {
  connect(&m_graph, &EditedGraph::modifiedChanged, this, &HostWindow::showTitle);
  connect(&m_graph, &EditedGraph::loaded, this, &HostWindow::showTitle);
  connect(&m_graph, &EditedGraph::actionChanged, this, &HostWindow::showTitle);
  connect(&m_graph, &EditedGraph::rowsMayDiffer, this, &HostWindow::showStates);
  connect(&m_commands, &GraphCommands::editorPositionWanted, this,
          [this](ActionId action, const EditorPosition& position) {
            select(action, false);
            m_properties->showPosition(position);
          });
  connect(&m_services, &EditServices::modified, m_properties, &PropertyPanel::noteEdit);
  connect(&m_services, &EditServices::helpWanted, this, &HostWindow::showHelp);
  connect(&m_services, &EditServices::logged, m_log, &LogPanel::append);
}

void HostWindow::connectWork() {
  connect(&m_run, &GraphRun::started, this, &HostWindow::showRunState);
  connect(&m_run, &GraphRun::statesChanged, this, &HostWindow::showStates);
  connect(&m_run, &GraphRun::diskQuestionChanged, this, &HostWindow::showRunState);
  connect(&m_run, &GraphRun::ended, this, &HostWindow::showRunState);
  connect(&m_columns, &DesignColumns::changed, this,
          [this] { m_canvas->setProblems(m_columns.problems()); });
  connect(&m_arrangement, &Arrangement::arranged, this, &HostWindow::showArranged);
  connect(&m_arrangement, &Arrangement::failed, this, &HostWindow::showNotice);
  connect(m_report, &RunReportPanel::actionWanted, this,
          [this](const QString& name) { select(m_graph.idOf(name), false); });
}

bool HostWindow::focusNextPrevChild(bool isForward) {
  QWidget* next = nextInTabOrder(*this, isForward);
  if (next != nullptr) {
    next->setFocus(isForward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  }
  return next != nullptr;
}

// Actions may have been deleted since it was asked for, or the whole graph be another one.
void HostWindow::showArranged(QHash<ActionId, QPointF> positions) {
  positions.removeIf([this](const auto& each) { return !m_graph.hasAction(each.key()); });
  const bool isUnasked = std::exchange(m_arrangesUnasked, false);
  if (positions.isEmpty()) {
    return;
  }
  if (isUnasked) {
    m_graph.showAt(positions);
  } else {
    m_commands.moveActions(positions, {});
  }
  m_canvas->zoomToAll();
}

void HostWindow::showPage() {
  if (m_hasGraph) {
    m_pages->setCurrentWidget(m_canvas);
  } else {
    m_start->refresh();
    m_pages->setCurrentWidget(m_start);
    if (!std::exchange(m_hasExamples, true)) {
      QMetaObject::invokeMethod(this, &HostWindow::showExamples, Qt::QueuedConnection);
    }
  }
  showPanels(m_hasGraph);
  enableActions();
  showTitle();
}

// The start page has the window for itself.
void HostWindow::showPanels(bool areShown) {
  if (areShown == m_hidden.isEmpty()) {
    return;
  }
  if (areShown) {
    restorePanels(*this, std::exchange(m_hidden, {}));
    return;
  }
  m_hidden = QMainWindow::saveState();
  m_bar->hide();
  for (QDockWidget* dock : findChildren<QDockWidget*>()) {
    dock->hide();
  }
}

void HostWindow::showTitle() {
  setWindowTitle(m_hasGraph ? tr("%1[*] - kelvarin").arg(graphName())
                            : QStringLiteral("kelvarin[*]"));
  setWindowModified(m_hasGraph && m_graph.isModified());
  const ActionId current = m_properties->action();
  m_propertiesDock->setWindowTitle(
      current == kNoId ? tr("Properties")
                       : tr("%1 \"%2\"").arg(m_graph.typeName(current), m_graph.name(current)));
}

void HostWindow::showCurrentAction() {
  m_properties->showAction(m_canvas->currentAction());
  showTitle();
  enableActions();
  previewSelection();
}

void HostWindow::showStates() {
  m_canvas->setStates(m_run.states());
}

void HostWindow::showRunState() {
  enableActions();
  showStates();
  if (m_run.isRunning()) {
    m_outcome->setText(m_run.diskQuestion() ? tr("Waiting for space on the disk")
                                            : tr("Running ..."));
  } else if (const RunResult* result = m_run.result()) {
    showOutcome(*result);
  } else {
    m_outcome->clear();
  }
}

void HostWindow::showOutcome(const RunResult& result) {
  const QString seconds = QLocale().toString(result.seconds, 'f', 2);
  switch (result.state) {
    case GlobalParameters::RunningState::endedNormally:
      m_outcome->setText(summaryOf(result));
      return;
    case GlobalParameters::RunningState::stoppedByUser:
      m_outcome->setText(tr("stopped after %1 s").arg(seconds));
      return;
    default:
      m_outcome->setText(tr("failed after %1 s: see the log").arg(seconds));
      m_logDock->raise();
  }
}

void HostWindow::showHelp(const QString& helpId) {
  for (const CatalogueEntry& entry : m_graph.catalogue().entries()) {
    if ((entry.helpId == helpId || entry.typeName == helpId) &&
        showActionPage(entry.typeName, this)) {
      return;
    }
  }
  statusBar()->showMessage(tr("There is no help page \"%1\".").arg(helpId));
}

void HostWindow::showNotice(const QString& text) {
  m_notice->setMessage(Severity::warning, text, {{QStringLiteral("close"), tr("Close")}});
}

QString HostWindow::graphName() const {
  const QString& origin = m_graph.graph().file;
  if (!m_file.path().isEmpty() || origin.isEmpty()) {
    return m_file.path().isEmpty() ? tr("New graph") : QFileInfo(m_file.path()).fileName();
  }
  return tr("Copy of %1").arg(QFileInfo(origin).fileName());
}

}  // namespace kelvarin
