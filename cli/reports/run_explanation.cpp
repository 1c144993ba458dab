#include "cli/reports/run_explanation.h"

#include "cli/reports/evaluation_plan.h"
#include "cli/reports/messages.h"

namespace kelvarin {

namespace {

// Those that it reads, or those that a source makes.
long long rowsOf(const ActionResult& action) {
  long long rows = 0;
  for (const long long ofPin : action.rowsIn.empty() ? action.rowsOut : action.rowsIn) {
    rows += ofPin;
  }
  return rows;
}

QString timeOf(const ActionResult& action) {
  const long long rows = rowsOf(action);
  return report_messages::timeOfAction(action.seconds, rows);
}

QString countsOf(const OutputReport& output) {
  QString counts;
  const auto add = [&counts](long long count, const QString& text) {
    counts += count > 0 ? QStringLiteral(", ") + text : QString();
  };
  add(output.nulls, report_messages::missingResults(output.nulls));
  add(output.nans, report_messages::noNumbers(output.nans));
  add(output.failures, report_messages::failedResults(output.failures));
  return counts;
}

}  // namespace

QString explanationOf(const RunResult& result) {
  QString lines = report_messages::explanationTitle();
  for (const ActionResult& action : result.actions) {
    lines += report_messages::explainedAction(action.name, action.typeName, timeOf(action));
    if (action.report.blocksRead >= 0) {
      lines += report_messages::blocks(action.report.blocksRead, action.report.blocksSkipped);
    }
    lines += u'\n';
    for (const OutputReport& output : action.report.outputs) {
      lines += QStringLiteral("    %1: ").arg(output.name) +
               evaluationOf(output, action.report.outputs) + countsOf(output) + u'\n';
    }
  }
  return lines;
}

}  // namespace kelvarin
