// The menus of the window, its tool bar and the menu of the canvas.
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QSettings>
#include <QToolBar>
#include <QToolButton>

#include "gui/canvas/canvas_view.h"
#include "gui/dialogs/text_dialogs.h"
#include "gui/log/log_panel.h"
#include "gui/palette/action_search.h"
#include "gui/palette/palette_panel.h"
#include "gui/properties/property_panel.h"
#include "gui/window/canvas_menus.h"
#include "gui/window/host_window.h"
#include "gui/window/window_state.h"
#include "host/widgets/action_icon.h"
#include "host/widgets/icons.h"
#include "host/widgets/theme_menu.h"

namespace kelvarin {

namespace {

const QString kExpertKey = QStringLiteral("view/expertMode");
constexpr int kPictureSize = 16;

QWidget* stretch() {
  auto* space = new QWidget;
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  return space;
}

}  // namespace

void HostWindow::makeMenus() {
  makeFileMenu();
  makeEditMenu();
  makeGraphMenu();
  makeViewMenu();
  makeHelpMenu();
  makeToolBar();
}

void HostWindow::makeFileMenu() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  m_newAction = file->addAction(icon(IconName::add), tr("&New"), this, &HostWindow::newGraph);
  m_newAction->setShortcut(QKeySequence::New);
  m_openAction =
      file->addAction(icon(IconName::browse), tr("&Open ..."), this, &HostWindow::chooseFileToOpen);
  m_openAction->setShortcut(QKeySequence::Open);
  m_recentMenu = file->addMenu(tr("Open &recent"));
  connect(m_recentMenu, &QMenu::aboutToShow, this, &HostWindow::showRecentGraphs);
  file->addSeparator();
  m_saveAction = file->addAction(icon(IconName::save), tr("&Save"), this, &HostWindow::save);
  m_saveAction->setShortcut(QKeySequence::Save);
  m_saveAsAction = file->addAction(tr("Save &as ..."), this, &HostWindow::saveAs);
  m_saveAsAction->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
  QAction* picture = file->addAction(tr("&Export as picture ..."), this, &HostWindow::exportCanvas);
  file->addSeparator();
  QAction* close = file->addAction(tr("&Close"), this, &QWidget::close);
  close->setShortcut(QKeySequence::Close);
  m_graphActions.insert(m_graphActions.end(), {m_saveAction, m_saveAsAction, picture});
}

void HostWindow::showRecentGraphs() {
  m_recentMenu->clear();
  const QStringList graphs = recentGraphs();
  for (const QString& path : graphs) {
    QAction* action =
        m_recentMenu->addAction(QFileInfo(path).fileName(), this, [this, path] { open(path); });
    action->setToolTip(path);
  }
  m_recentMenu->setToolTipsVisible(true);
  if (graphs.isEmpty()) {
    m_recentMenu->addAction(tr("None yet"))->setEnabled(false);
  }
}

void HostWindow::makeEditMenu() {
  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  m_undoAction = m_commands.stack().createUndoAction(this, tr("Undo"));
  const QUndoStack& stack = m_commands.stack();
  disconnect(m_undoAction, &QAction::triggered, &stack, &QUndoStack::undo);
  connect(m_undoAction, &QAction::triggered, this, &HostWindow::undo);
  m_undoAction->setIcon(icon(IconName::undo));
  m_undoAction->setShortcut(QKeySequence::Undo);
  m_redoAction = m_commands.stack().createRedoAction(this, tr("Redo"));
  disconnect(m_redoAction, &QAction::triggered, &stack, &QUndoStack::redo);
  connect(m_redoAction, &QAction::triggered, this, &HostWindow::redo);
  m_redoAction->setIcon(icon(IconName::redo));
  m_redoAction->setShortcuts(
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
  edit->addActions({m_undoAction, m_redoAction});
  edit->addSeparator();
  m_canvasMenus->fillEdit(*edit);
  edit->addSeparator();
  addFindActions(*edit);
}

void HostWindow::makeGraphMenu() {
  QMenu* graph = menuBar()->addMenu(tr("&Graph"));
  m_runAction = graph->addAction(icon(IconName::play), tr("&Run"), this, &HostWindow::run);
  m_runAction->setShortcut(Qt::Key_F5);
  m_runToAction = graph->addAction(tr("Run to &here"), this, &HostWindow::runToCurrent);
  m_stopAction =
      graph->addAction(icon(IconName::stop), tr("&Stop"), this, [this] { m_run.stop(); });
  m_stopAction->setShortcut(Qt::SHIFT | Qt::Key_F5);
  QAction* command = graph->addAction(icon(IconName::copy), tr("Copy as command &line"), this,
                                      [this] { copyCommandLine(kNoId); });
  QAction* commandToHere = graph->addAction(tr("Copy run to here as &command line"), this,
                                            [this] { copyCommandLine(m_canvas->currentAction()); });
  m_parametersAction = graph->addAction(tr("&Parameters ..."), this, &HostWindow::editParameters);
  graph->addSeparator();

  QAction* openEditor = graph->addAction(tr("&Open in a window"), this,
                                         [this] { openEditorWindow(m_canvas->currentAction()); });
  m_replaceMenu = graph->addMenu(tr("Replace &by"));
  for (const CatalogueEntry& entry : m_graph.catalogue().entries()) {
    m_replaceMenu->addAction(actionIcon(*entry.prototype, kPictureSize), entry.typeName, this,
                             [this, type = entry.typeName] { replaceCurrent(type); });
  }
  graph->addSeparator();
  QAction* arranged = graph->addAction(tr("&Arrange"), this, &HostWindow::arrange);
  arranged->setShortcut(Qt::CTRL | Qt::Key_L);
  m_canvasMenus->fillGraph(*graph, {openEditor, m_runToAction, m_replaceMenu->menuAction()},
                           arranged);
  graph->addSeparator();
  addProblemActions(*graph);
  m_graphActions.insert(m_graphActions.end(), {command, m_parametersAction, arranged});
  m_actionActions.insert(m_actionActions.end(),
                         {openEditor, m_runToAction, commandToHere, m_replaceMenu->menuAction()});
  m_contextMenu = new QMenu(this);
}

void HostWindow::showContextMenu(QPoint globalPosition) {
  m_canvasMenus->popup(*m_contextMenu, globalPosition);
}

// A panel behind others in its tabs counts as not shown, and comes to the front.
QAction* HostWindow::newPanelAction(QDockWidget& panel, const QKeySequence& key) {
  auto* action = new QAction(panel.windowTitle(), this);
  action->setCheckable(true);
  action->setShortcut(key);
  connect(&panel, &QDockWidget::visibilityChanged, action, &QAction::setChecked);
  connect(action, &QAction::triggered, &panel, [&panel](bool isShown) {
    panel.setVisible(isShown);
    panel.raise();
  });
  return action;
}

void HostWindow::makeViewMenu() {
  QMenu* view = menuBar()->addMenu(tr("&View"));
  const std::pair<QDockWidget*, QKeySequence> panels[] = {
      {m_paletteDock, Qt::CTRL | Qt::SHIFT | Qt::Key_E},
      {m_propertiesDock, Qt::CTRL | Qt::SHIFT | Qt::Key_R},
      {m_previewDock, Qt::CTRL | Qt::SHIFT | Qt::Key_P},
      {m_logDock, Qt::CTRL | Qt::SHIFT | Qt::Key_L},
      {m_reportDock, {}}};
  for (const auto& [dock, key] : panels) {
    view->addAction(newPanelAction(*dock, key));
  }
  view->addSeparator();
  m_canvasMenus->fillView(*view);
  view->addSeparator();
  addThemeMenu(*view, m_theme);
  QAction* expert = view->addAction(tr("E&xpert mode"));
  expert->setCheckable(true);
  expert->setChecked(QSettings().value(kExpertKey, true).toBool());
  setExpertMode(expert->isChecked());
  connect(expert, &QAction::toggled, this, &HostWindow::setExpertMode);
}

// Editors ask for the mode when they are made.
void HostWindow::setExpertMode(bool isExpert) {
  QSettings().setValue(kExpertKey, isExpert);
  m_services.setUserMode(isExpert ? GlobalUserMode::expert : GlobalUserMode::simple);
  m_properties->renewEditor();
}

void HostWindow::makeHelpMenu() {
  QMenu* help = menuBar()->addMenu(tr("&Help"));
  QAction* action = help->addAction(icon(IconName::help), tr("&This action"), this, [this] {
    showHelp(m_graph.typeName(m_canvas->currentAction()));
  });
  action->setShortcut(Qt::Key_F1);
  m_actionActions.push_back(action);
  help->addAction(tr("T&our of an example"), this, &HostWindow::startTour);
  help->addAction(tr("&Keyboard"), this, [this] { showKeys(this); });
}

void HostWindow::makeToolBar() {
  m_bar = addToolBar(tr("Graph"));
  m_bar->setObjectName(QStringLiteral("graphBar"));
  m_bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_bar->setMovable(false);
  m_bar->addActions({m_runAction, m_stopAction});
  m_bar->addSeparator();
  m_bar->addActions({m_saveAction, m_undoAction, m_redoAction});
  // Their texts name what they undo, so the buttons would never stay where they are.
  for (QAction* action : {m_undoAction, m_redoAction}) {
    qobject_cast<QToolButton*>(m_bar->widgetForAction(action))
        ->setToolButtonStyle(Qt::ToolButtonIconOnly);
  }
  m_bar->addSeparator();
  m_bar->addAction(m_parametersAction);
  for (auto* button : m_bar->findChildren<QToolButton*>()) {
    button->setFocusPolicy(Qt::TabFocus);
  }
  m_bar->addWidget(stretch());
  m_outcome->setContentsMargins(8, 0, 12, 0);
  m_outcome->setAccessibleDescription(tr("Outcome of the last run"));
  m_bar->addWidget(m_outcome);
}

void HostWindow::enableActions() {
  const bool hasAction = m_hasGraph && m_canvas->currentAction() != kNoId;
  for (QAction* action : m_graphActions) {
    action->setEnabled(m_hasGraph);
  }
  for (QAction* action : m_actionActions) {
    action->setEnabled(hasAction);
  }
  m_canvasMenus->enable(m_hasGraph);
  const bool isRunning = m_run.isRunning();
  m_runAction->setEnabled(m_hasGraph && !isRunning);
  m_runToAction->setEnabled(hasAction && !isRunning);
  m_stopAction->setEnabled(isRunning);
}

}  // namespace kelvarin
