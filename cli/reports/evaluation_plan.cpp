#include "cli/reports/evaluation_plan.h"

#include <algorithm>

#include "cli/reports/messages.h"

namespace kelvarin {

namespace {

QString engineOf(const OutputReport& output) {
  if (!output.slowedBy.isEmpty()) {
    return output.engine + report_messages::becauseOf(output.slowedBy);
  }
  return output.reason.isEmpty() ? output.engine
                                 : output.engine + QStringLiteral(" (%1)").arg(output.reason);
}

// An expression without a token that forbids batches may be kept from them by another one.
QString batchesOf(const OutputReport& output, const std::vector<OutputReport>& all) {
  if (output.isByBatch) {
    return report_messages::byBatch();
  }
  if (!output.batchRefusal.isEmpty()) {
    return report_messages::rowByRow() + report_messages::becauseOf(output.batchRefusal);
  }
  const bool isOther = std::ranges::any_of(
      all, [](const OutputReport& other) { return !other.batchRefusal.isEmpty(); });
  return isOther ? report_messages::rowByRow() + report_messages::asOtherOutputs()
                 : report_messages::rowByRow();
}

}  // namespace

QString evaluationOf(const OutputReport& output, const std::vector<OutputReport>& all) {
  return engineOf(output) + batchesOf(output, all);
}

QString evaluationPlan(const RunResult& result) {
  QString lines;
  for (const ActionResult& action : result.actions) {
    const std::vector<OutputReport>& outputs = action.report.outputs;
    for (const OutputReport& output : outputs) {
      lines += report_messages::planOfOutput(action.name, output.name) +
               evaluationOf(output, outputs) + u'\n';
    }
  }
  return lines.isEmpty() ? lines : report_messages::planTitle() + lines;
}

}  // namespace kelvarin
