#include "gui/run/action_states.h"

#include <algorithm>

#include <QHash>

namespace kelvarin {

namespace {

ActionState::Kind kindOf(ActionPhase phase) {
  switch (phase) {
    case ActionPhase::waiting:
      return ActionState::Kind::waiting;
    case ActionPhase::running:
      return ActionState::Kind::running;
    case ActionPhase::finished:
      return ActionState::Kind::done;
    case ActionPhase::failed:
      return ActionState::Kind::failed;
  }
  return ActionState::Kind::none;
}

// A run that ended well has done all that was asked of it, also of actions whose last rows nobody
// wanted. One that did not has kept nothing that its sinks had written.
ActionState::Kind kindAfter(const ActionResult& action, bool isOk) {
  if (action.phase == ActionPhase::failed) {
    return ActionState::Kind::failed;
  }
  const bool isSink = action.rowsOut.empty();
  const bool isDone = isOk || (action.phase == ActionPhase::finished && !isSink);
  return isDone ? ActionState::Kind::done : ActionState::Kind::stopped;
}

// The first error of each action, or its first warning.
class Messages {
 public:
  explicit Messages(const std::vector<LogLine>& log) {
    for (const LogLine& line : log) {
      if (line.level == LogLevel::information || line.action.isEmpty()) {
        continue;
      }
      auto& texts = line.level == LogLevel::error ? m_errors : m_warnings;
      if (!texts.contains(line.action)) {
        texts.insert(line.action, line.text);
      }
    }
  }

  void addTo(ActionState& state, const QString& action) const {
    state.hasWarning = m_warnings.contains(action);
    state.message = m_errors.value(action, m_warnings.value(action));
    if (m_errors.contains(action)) {
      state.kind = ActionState::Kind::failed;
    }
  }

 private:
  QHash<QString, QString> m_errors;
  QHash<QString, QString> m_warnings;
};

}  // namespace

std::vector<ActionState> statesOf(const RunProgress& progress) {
  std::vector<ActionState> states;
  states.reserve(progress.actions.size());
  for (const ActionProgress& action : progress.actions) {
    ActionState state;
    state.kind = kindOf(action.phase);
    state.fractionDone = action.fractionDone;
    state.rowsIn = action.rowsIn;
    state.rowsOut = action.rowsOut;
    state.seconds = std::max(0.0, action.seconds);
    states.push_back(std::move(state));
  }
  return states;
}

std::vector<ActionState> statesOf(const RunResult& result) {
  const Messages messages(result.log);
  std::vector<ActionState> states;
  states.reserve(result.actions.size());
  for (const ActionResult& action : result.actions) {
    ActionState state;
    state.kind = kindAfter(action, result.isOk());
    state.rowsIn = action.rowsIn;
    state.rowsOut = action.rowsOut;
    state.seconds = std::max(0.0, action.seconds);
    messages.addTo(state, action.name);
    states.push_back(std::move(state));
  }
  return states;
}

}  // namespace kelvarin
