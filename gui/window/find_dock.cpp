#include "gui/window/find_dock.h"

#include <QApplication>

namespace kelvarin {

FindDock::FindDock(GraphCommands& commands, QWidget* parent)
    : QDockWidget(tr("Find"), parent), m_panel(new FindPanel(commands)) {
  setObjectName(QStringLiteral("findDock"));
  setWidget(m_panel);
  connect(m_panel, &FindPanel::closeWanted, this, &FindDock::closePanel);
}

void FindDock::open(FindQuery::Task task) {
  QWidget* focused = QApplication::focusWidget();
  if (focused != nullptr && !isAncestorOf(focused)) {
    m_focusBefore = focused;
  }
  show();
  raise();
  m_panel->open(task);
}

void FindDock::step(int direction) {
  if (isHidden() || m_panel->model().rowCount() == 0) {
    open(FindQuery::Task::find);
    return;
  }
  m_panel->step(direction);
}

void FindDock::closePanel() {
  const QPointer<QWidget> before = m_focusBefore;
  hide();
  if (before != nullptr && before->isVisible()) {
    before->setFocus(Qt::OtherFocusReason);
  } else {
    emit focusLost();
  }
}

}  // namespace kelvarin
