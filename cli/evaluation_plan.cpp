#include "cli/evaluation_plan.h"

#include <algorithm>

#include "cli/messages.h"

namespace kelvarin {

namespace {

QString engineOf(const OutputReport& output) {
  if (!output.slowedBy.isEmpty()) {
    return output.engine + program_messages::becauseOf(output.slowedBy);
  }
  return output.reason.isEmpty() ? output.engine
                                 : output.engine + QStringLiteral(" (%1)").arg(output.reason);
}

// An expression without a token that forbids batches may be kept from them by another one.
QString batchesOf(const OutputReport& output, const std::vector<OutputReport>& all) {
  if (output.isByBatch) {
    return program_messages::byBatch();
  }
  if (!output.batchRefusal.isEmpty()) {
    return program_messages::rowByRow() + program_messages::becauseOf(output.batchRefusal);
  }
  const bool isOther = std::ranges::any_of(
      all, [](const OutputReport& other) { return !other.batchRefusal.isEmpty(); });
  return isOther ? program_messages::rowByRow() + program_messages::asOtherOutputs()
                 : program_messages::rowByRow();
}

}  // namespace

QString evaluationPlan(const RunResult& result) {
  QString lines;
  for (const ActionResult& action : result.actions) {
    const std::vector<OutputReport>& outputs = action.report.outputs;
    for (const OutputReport& output : outputs) {
      lines += program_messages::planOfOutput(action.name, output.name, engineOf(output)) +
               batchesOf(output, outputs) + u'\n';
    }
  }
  return lines.isEmpty() ? lines : program_messages::planTitle() + lines;
}

}  // namespace kelvarin
