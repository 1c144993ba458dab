// The menus of the window, its tool bar, and what is remembered of the view.
#include <QMenuBar>
#include <QSettings>
#include <QToolBar>

#include "gui/dialogs/text_dialogs.h"
#include "gui/edit/edit_window.h"
#include "gui/properties/property_panel.h"
#include "host/widgets/icons.h"
#include "host/widgets/theme_menu.h"

namespace kelvarin {

namespace {

const QString kExpertKey = QStringLiteral("view/expertMode");

}  // namespace

void EditWindow::makeMenus() {
  QMenu* graph = menuBar()->addMenu(tr("&Graph"));
  m_saveAction = graph->addAction(icon(IconName::save), tr("&Save"), this, &EditWindow::save);
  m_saveAction->setShortcut(QKeySequence::Save);
  QAction* reloadAction =
      graph->addAction(icon(IconName::reload), tr("&Reload"), this, &EditWindow::reload);
  reloadAction->setShortcut(Qt::CTRL | Qt::Key_R);
  reloadAction->setToolTip(tr("Read the graph from its file again"));
  m_checkAction = graph->addAction(icon(IconName::check), tr("&Check"), this, &EditWindow::check);
  m_checkAction->setShortcut(Qt::CTRL | Qt::Key_K);
  m_checkAction->setToolTip(tr("Find the faults of the graph without running it"));
  graph->addSeparator();
  QAction* closeAction = graph->addAction(tr("C&lose"), this, &QWidget::close);
  closeAction->setShortcut(QKeySequence::Close);

  makeEditMenu();
  QMenu* view = menuBar()->addMenu(tr("&View"));
  addThemeMenu(*view, m_theme);
  QAction* expert = view->addAction(tr("&Expert mode"));
  expert->setCheckable(true);
  expert->setChecked(QSettings().value(kExpertKey, true).toBool());
  setExpertMode(expert->isChecked());
  connect(expert, &QAction::toggled, this, &EditWindow::setExpertMode);

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  help->addAction(icon(IconName::help), tr("&This action"), this, [this] {
    if (const ActionId shown = m_properties->action(); shown != kNoId) {
      showHelp(m_graph.typeName(shown));
    }
  });
  help->addAction(tr("&Keyboard"), this, [this] { showKeys(this); });

  QToolBar* bar = addToolBar(tr("Graph"));
  bar->setObjectName(QStringLiteral("graphBar"));
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setMovable(false);
  bar->addActions({m_saveAction, reloadAction, m_checkAction});
}

// The texts name the step: "Undo: Change separator of 'out'".
void EditWindow::makeEditMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Edit"));
  QAction* undoAction = menu->addAction(tr("&Undo"), this, &EditWindow::undo);
  QAction* redoAction = menu->addAction(tr("&Redo"), this, &EditWindow::redo);
  undoAction->setShortcut(QKeySequence::Undo);
  redoAction->setShortcut(QKeySequence::Redo);
  undoAction->setEnabled(false);
  redoAction->setEnabled(false);
  const QUndoStack& stack = m_commands.stack();
  connect(&stack, &QUndoStack::canUndoChanged, undoAction, &QAction::setEnabled);
  connect(&stack, &QUndoStack::canRedoChanged, redoAction, &QAction::setEnabled);
  connect(&stack, &QUndoStack::undoTextChanged, undoAction, [undoAction](const QString& step) {
    undoAction->setText(step.isEmpty() ? tr("&Undo") : tr("&Undo: %1").arg(step));
  });
  connect(&stack, &QUndoStack::redoTextChanged, redoAction, [redoAction](const QString& step) {
    redoAction->setText(step.isEmpty() ? tr("&Redo") : tr("&Redo: %1").arg(step));
  });
}

void EditWindow::undo() {
  m_properties->commit();
  m_commands.stack().undo();
}

void EditWindow::redo() {
  m_properties->commit();
  m_commands.stack().redo();
}

// Editors ask for the mode when they are made, so the one that is shown is made anew.
void EditWindow::setExpertMode(bool isExpert) {
  QSettings().setValue(kExpertKey, isExpert);
  m_services.setUserMode(isExpert ? GlobalUserMode::expert : GlobalUserMode::simple);
  m_properties->renewEditor();
}

}  // namespace kelvarin
