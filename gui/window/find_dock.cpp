#include "gui/window/find_dock.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace kelvarin {

namespace {

// Of one line: what a user wants to find elsewhere.
QString selectedText(const QWidget& field) {
  QString selected;
  if (const auto* line = qobject_cast<const QLineEdit*>(&field)) {
    selected = line->selectedText();
  } else if (const auto* text = qobject_cast<const QPlainTextEdit*>(&field)) {
    selected = text->textCursor().selectedText();
  }
  return selected.contains(QChar::ParagraphSeparator) ? QString() : selected;
}

}  // namespace

FindDock::FindDock(GraphCommands& commands, QWidget* parent)
    : QDockWidget(tr("Find"), parent), m_panel(new FindPanel(commands)) {
  setObjectName(QStringLiteral("findDock"));
  setWidget(m_panel);
  connect(m_panel, &FindPanel::closeWanted, this, &FindDock::closePanel);
}

void FindDock::open(FindQuery::Task task) {
  QWidget* focused = QApplication::focusWidget();
  QString selected;
  if (focused != nullptr && !isAncestorOf(focused)) {
    m_focusBefore = focused;
    selected = selectedText(*focused);
  }
  show();
  raise();
  m_panel->open(task, selected);
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
