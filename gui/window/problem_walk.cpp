#include "gui/window/problem_walk.h"

#include <algorithm>

#include "gui/log/log_model.h"
#include "gui/run/design_columns.h"
#include "gui/run/graph_run.h"

namespace kelvarin {

ProblemWalk::ProblemWalk(const EditedGraph& graph, const DesignColumns& columns,
                         const GraphRun& run, const LogModel& log, QObject* parent)
    : QObject(parent), m_graph(graph), m_columns(columns), m_log(log) {
  connect(&run, &GraphRun::started, this, [this] { m_firstLogRow = m_log.rowCount(); });
  connect(&log, &QAbstractItemModel::rowsRemoved, this,
          [this](const QModelIndex&, int first, int last) {
            if (m_firstLogRow) {
              m_firstLogRow = std::max(0, *m_firstLogRow - (last - first + 1));
            }
          });
  connect(&log, &QAbstractItemModel::modelReset, this, [this] {
    if (m_firstLogRow) {
      m_firstLogRow = 0;
    }
  });
  connect(&graph, &EditedGraph::loaded, this, [this] { m_firstLogRow.reset(); });
}

std::vector<Problem> ProblemWalk::problems() const {
  std::vector<Problem> problems;
  appendOfCanvas(problems);
  appendOfLog(problems);
  return problems;
}

void ProblemWalk::appendOfCanvas(std::vector<Problem>& problems) const {
  for (const ActionId action : m_graph.actions()) {
    if (const QString why = m_graph.whyCannotRun(action); !why.isEmpty()) {
      problems.push_back({.action = action, .text = why});
    } else if (const QString found = m_columns.problems().value(action); !found.isEmpty()) {
      const LogDetails details = m_columns.problemDetails(action);
      problems.push_back({.action = action,
                          .text = found,
                          .output = details.output,
                          .position = details.position});
    }
  }
  for (const LinkId link : m_graph.links()) {
    if (const QString& why = m_graph.link(link).whyBroken; !why.isEmpty()) {
      problems.push_back({.link = link, .text = why});
    }
  }
}

void ProblemWalk::appendOfLog(std::vector<Problem>& problems) const {
  for (int row = m_firstLogRow.value_or(m_log.rowCount()); row < m_log.rowCount(); ++row) {
    const LogEntry& line = m_log.entry(row);
    if (line.level == LogLevel::information) {
      continue;
    }
    const Problem problem{.action = m_graph.idOf(line.action),
                          .logRow = row,
                          .text = line.text,
                          .output = line.details.output,
                          .position = line.details.position};
    const auto known = std::ranges::find_if(
        problems, [&problem](const Problem& other) { return problem.isSameAs(other); });
    if (known == problems.end()) {
      problems.push_back(problem);
    } else {
      known->logRow = row;
    }
  }
}

void ProblemWalk::step(int direction) {
  const std::vector<Problem> all = problems();
  if (all.empty()) {
    emit status(tr("There are no problems."));
    return;
  }
  const auto count = static_cast<std::ptrdiff_t>(all.size());
  const auto current = std::ranges::find_if(
      all, [this](const Problem& problem) { return problem.isSameAs(m_current); });
  const std::ptrdiff_t from = current != all.end() ? current - all.begin() : direction > 0 ? -1 : 0;
  const std::ptrdiff_t index = (from + direction + count) % count;
  m_current = all[static_cast<std::size_t>(index)];
  const QString text = m_current.text.simplified();  // a status bar has one line
  const QString what =
      m_current.action == kNoId ? text : tr("%1: %2").arg(m_graph.name(m_current.action), text);
  emit problemWanted(m_current);
  emit status(tr("Problem %1 of %2: %3").arg(index + 1).arg(count).arg(what));
}

}  // namespace kelvarin
