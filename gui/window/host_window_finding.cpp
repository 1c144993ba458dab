// How the window leads to what was found, to the lines of the log and to problems.
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QPointer>
#include <QStatusBar>

#include "gui/canvas/canvas_view.h"
#include "gui/log/log_panel.h"
#include "gui/properties/property_panel.h"
#include "gui/window/find_dock.h"
#include "gui/window/host_window.h"
#include "gui/window/problem_walk.h"
#include "host/widgets/icons.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

void HostWindow::connectFinding() {
  FindPanel& panel = m_find->panel();
  SearchedTexts& texts = panel.model().texts();
  texts.setColumnsOfPin([this](const PinRef& pin) -> std::optional<QStringList> {
    const PinColumns known = m_columns.columns(pin);
    if (!known.isKnown) {
      return std::nullopt;
    }
    QStringList names;
    for (const PinColumns::Column& column : known.columns) {
      names.append(column.name);
    }
    return names;
  });
  connect(&m_columns, &DesignColumns::changed, &texts, &SearchedTexts::forgetColumns);
  connect(&panel, &FindPanel::textWanted, this, &HostWindow::showFound);
  connect(&panel, &FindPanel::aboutToReplace, m_properties, &PropertyPanel::commit);
  connect(m_find, &FindDock::focusLost, this, [this] { m_canvas->setFocus(); });
  connect(m_log, &LogPanel::actionWanted, this, &HostWindow::openLogEntry);
  connect(&m_graph, &EditedGraph::linkChanged, this, [this](LinkId link) {
    if (const QString& why = m_graph.link(link).whyBroken; !why.isEmpty()) {
      statusBar()->showMessage(tr("A link is broken, and kept: %1").arg(why));
    }
  });
  connect(m_problems, &ProblemWalk::problemWanted, this, &HostWindow::showProblem);
  connect(m_problems, &ProblemWalk::status, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
}

void HostWindow::addFindActions(QMenu& menu) {
  const auto append = [this, &menu](const QString& text, const QKeySequence& key,
                                    const std::function<void()>& work) {
    QAction* action = menu.addAction(text, this, work);
    action->setShortcut(key);
    m_graphActions.push_back(action);
    return action;
  };
  append(tr("&Find ..."), QKeySequence::Find, [this] {
    m_find->open(FindQuery::Task::find);
  })->setIcon(icon(IconName::search));
  append(tr("&Replace ..."), Qt::CTRL | Qt::Key_H,
         [this] { m_find->open(FindQuery::Task::replaceTexts); });
  append(tr("Rena&me a column everywhere ..."), {},
         [this] { m_find->open(FindQuery::Task::renameColumn); });
  append(tr("Find &next"), Qt::Key_F3, [this] { m_find->step(1); });
  append(tr("Find pre&vious"), Qt::SHIFT | Qt::Key_F3, [this] { m_find->step(-1); });
}

void HostWindow::addProblemActions(QMenu& menu) {
  QAction* next = menu.addAction(tr("Next proble&m"), this, [this] { m_problems->step(1); });
  next->setShortcut(Qt::Key_F8);
  QAction* before = menu.addAction(tr("Previo&us problem"), this, [this] { m_problems->step(-1); });
  before->setShortcut(Qt::SHIFT | Qt::Key_F8);
  m_graphActions.insert(m_graphActions.end(), {next, before});
}

void HostWindow::openLogEntry(const LogEntry& entry) {
  goTo(m_graph.idOf(entry.action), entry.details.output, entry.details.position);
}

// Of an action whose only expression has no name, the position alone says where.
void HostWindow::goTo(ActionId action, const QString& output, int position) {
  if (action == kNoId) {
    return;
  }
  select(action, false);
  if (m_properties->editor() != nullptr && (position >= 0 || !output.isEmpty())) {
    m_properties->editor()->showPosition(output, position);
  }
}

// Who steps through what was found stays in the panel.
void HostWindow::showFound(const FoundText& found, bool takesFocus) {
  const QPointer<QWidget> focused = takesFocus ? nullptr : QApplication::focusWidget();
  const bool isInEditor = found.text.kind == SearchedText::Kind::setting ||
                          found.text.kind == SearchedText::Kind::column;
  if (takesFocus && found.text.kind != SearchedText::Kind::note) {
    m_propertiesDock->show();
    m_canvas->setFocus();
  }
  if (found.text.kind == SearchedText::Kind::note) {
    m_canvas->showOnly({{}, {}, {found.text.note}});
  } else if (found.text.kind == SearchedText::Kind::expression) {
    goTo(found.text.action, found.text.output, static_cast<int>(found.position));
  } else {
    select(found.text.action, takesFocus && isInEditor);
  }
  if (focused != nullptr) {
    focused->setFocus(Qt::OtherFocusReason);
  }
}

void HostWindow::showProblem(const Problem& problem) {
  if (problem.link != kNoId) {
    m_canvas->showLink(problem.link);
  }
  goTo(problem.action, problem.output, problem.position);
  if (problem.logRow >= 0) {
    m_log->showLine(problem.logRow);
  }
  if (problem.action == kNoId && problem.logRow >= 0) {
    m_logDock->show();
    m_logDock->raise();
  }
}

}  // namespace kelvarin
