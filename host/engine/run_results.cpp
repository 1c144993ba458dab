#include "host/engine/run_results.h"

namespace kelvarin {

RunResult resultOf(const Graph& graph, const GraphExecution& execution,
                   RecordingServices& services) {
  RunResult result;
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const ActionItem& item = *graph.actions[i].item;
    const int index = static_cast<int>(i);
    result.actions.push_back({graph.actions[i].name, QString::fromLatin1(item.typeName()),
                              execution.rowsIn(index), execution.rowsOut(index),
                              services.backendsOf(item), services.columnsNamedBy(item)});
  }
  result.log = services.takeLog();
  return result;
}

}  // namespace kelvarin
