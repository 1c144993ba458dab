// What is shown of each action during a run and after it, made of what the engine reports.
//
// Used by: graph_run.cpp, run_services.h, run_report_model.cpp.
// Threads: any.
#pragma once

#include <vector>

#include <QHash>
#include <QStringList>

#include "gui/document/action_state.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// The first error of each action, and its first warning.
class ActionMessages {
 public:
  // True for a message that changes what is shown.
  bool note(LogLevel level, const QString& action, const QString& text);
  void addTo(ActionState& state, const QString& action) const;

 private:
  QHash<QString, QString> m_errors;
  QHash<QString, QString> m_warnings;
};

// While a run goes on; `names` are those of the actions, in their order.
std::vector<ActionState> statesOf(const RunProgress& progress, const QStringList& names,
                                  const ActionMessages& messages);
// In the order of the actions.
std::vector<ActionState> statesOf(const RunResult& result);

}  // namespace kelvarin
