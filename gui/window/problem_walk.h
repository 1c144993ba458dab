// The problems of the open graph one after the other: actions that cannot run, what the check while
// drawing finds, broken links, and what the last run logged.
//
// Used by: host_window.h.
// Threads: the user-interface thread.
#pragma once

#include <optional>
#include <vector>

#include <QObject>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class DesignColumns;
class GraphRun;
class LogModel;

struct Problem {
  ActionId action = kNoId;
  LinkId link = kNoId;
  int logRow = -1;  // of the line in the log's model
  QString text = {};
  QString output = {};  // of an expression action
  int position = -1;    // in its expression

  // Whatever line it has in the log meanwhile.
  bool isSameAs(const Problem& other) const {
    return action == other.action && link == other.link && text == other.text;
  }
};

class ProblemWalk : public QObject {
  Q_OBJECT

 public:
  // What is passed outlives the walk.
  ProblemWalk(const EditedGraph& graph, const DesignColumns& columns, const GraphRun& run,
              const LogModel& log, QObject* parent = nullptr);

  // Those of the canvas in document order, then those of the log that say something else.
  std::vector<Problem> problems() const;
  // On to the next problem or back to the one before, from the end to the beginning.
  void step(int direction);

 signals:
  void problemWanted(const kelvarin::Problem& problem);
  // "Problem 2 of 5: ...", or that there is none.
  void status(const QString& text);

 private:
  void appendOfCanvas(std::vector<Problem>& problems) const;
  void appendOfLog(std::vector<Problem>& problems) const;

  const EditedGraph& m_graph;
  const DesignColumns& m_columns;
  const LogModel& m_log;
  std::optional<int> m_firstLogRow;  // of the last run of this graph
  Problem m_current;
};

}  // namespace kelvarin
