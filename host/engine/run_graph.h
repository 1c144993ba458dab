// Runs a graph from its sources to its sinks and reports what came of it.
//
// Used by: the command line, tests.
// Threads: the caller's becomes the engine thread. Any thread or signal handler may set the
// record's status to stoppedByUser, which ends the run at the next row.
// Errors: in the result and the log; never throws.
#pragma once

#include <functional>
#include <vector>

#include <QString>
#include <QStringList>

#include "host/contract/action_report.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/contract/pin_columns.h"
#include "host/contract/sort_infos.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph.h"

namespace kelvarin {

struct LogLine {
  LogLevel level = LogLevel::information;
  QString action;  // its name in the graph, empty when no action's call logged
  QString text;
  LogDetails details;  // the position is known wherever an action is
};

struct WrittenFile {
  QString path;
  long long bytes = 0;
};

struct ActionResult {
  QString name;
  QString typeName;
  ActionPhase phase = ActionPhase::waiting;  // when the run ended
  double seconds = -1.0;                     // of work in the action itself; -1 when not measured
  std::vector<long long> rowsIn;             // one number a pin
  std::vector<long long> rowsOut;            // one number a pin
  QStringList backends;                      // of an expression action, one label an output
  QStringList namedColumns;      // in a check, the new columns whose names the action computed
  std::vector<PinColumns> pins;  // its output pins; unknown where it announced nothing
  std::vector<QVector<SortInfos>> sortOrders;  // of the rows of each of them
  ActionReport report;
  std::vector<WrittenFile> files;  // by a run that ended well
  int source = -1;                 // the action linked to its first input pin
  int sourcePin = 0;
};

struct RunResult {
  GlobalParameters::RunningState state = GlobalParameters::RunningState::failed;
  double seconds = 0.0;
  std::vector<ActionResult> actions;  // in the graph's order
  std::vector<LogLine> log;
  long long rejectedRows = -1;  // after which an action went on; -1 where nobody counted

  bool isOk() const { return state == GlobalParameters::RunningState::endedNormally; }
};

// The run has a session of its own: log lines reach the services of the caller's session at once
// and are collected in the result as well. Graphs may run at the same time, each on a thread of its
// own.
RunResult runGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options = {});

// Checks the graph without running it: sources announce their columns, expressions are compiled
// against them, sinks are not opened; only branches that feed a variable table (an input pin after
// the first) are read. Every fault that can be found is logged. Rows of the result are those read
// for it.
RunResult checkGraph(Graph& graph, RunRecord& record, const ExecutionOptions& options = {});

}  // namespace kelvarin
