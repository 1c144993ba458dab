#include "gui/run/action_states.h"

#include <algorithm>

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
ActionState::Kind kindAfter(const ActionResult& action, const RunResult& result) {
  if (action.phase == ActionPhase::failed &&
      result.state != GlobalParameters::RunningState::stoppedByUser) {
    return ActionState::Kind::failed;
  }
  const bool isSink = action.rowsOut.empty();
  const bool isDone = result.isOk() || (action.phase == ActionPhase::finished && !isSink);
  return isDone ? ActionState::Kind::done : ActionState::Kind::stopped;
}

}  // namespace

bool ActionMessages::note(LogLevel level, const QString& action, const QString& text) {
  if (level == LogLevel::information || action.isEmpty()) {
    return false;
  }
  auto& texts = level == LogLevel::error ? m_errors : m_warnings;
  if (texts.contains(action)) {
    return false;
  }
  texts.insert(action, text);
  return true;
}

// An action that has a warning is at work, even if it has not come to the end of its first call.
void ActionMessages::addTo(ActionState& state, const QString& action) const {
  state.hasWarning = m_warnings.contains(action);
  state.message = m_errors.value(action, m_warnings.value(action));
  if (m_errors.contains(action)) {
    state.kind = ActionState::Kind::failed;
  } else if (state.hasWarning && state.kind == ActionState::Kind::waiting) {
    state.kind = ActionState::Kind::running;
  }
}

std::vector<ActionState> statesOf(const RunProgress& progress, const QStringList& names,
                                  const ActionMessages& messages) {
  std::vector<ActionState> states;
  states.reserve(progress.actions.size());
  for (const ActionProgress& action : progress.actions) {
    ActionState state;
    state.kind = kindOf(action.phase);
    state.fractionDone = action.fractionDone;
    state.rowsIn = action.rowsIn;
    state.rowsOut = action.rowsOut;
    state.seconds = std::max(0.0, action.seconds);
    messages.addTo(state, names.value(static_cast<qsizetype>(states.size())));
    states.push_back(std::move(state));
  }
  return states;
}

std::vector<ActionState> statesOf(const RunResult& result) {
  ActionMessages messages;
  for (const LogLine& line : result.log) {
    messages.note(line.level, line.action, line.text);
  }
  std::vector<ActionState> states;
  states.reserve(result.actions.size());
  for (const ActionResult& action : result.actions) {
    ActionState state;
    const ActionState::Kind kind = kindAfter(action, result);
    state.kind = kind;
    state.rowsIn = action.rowsIn;
    state.rowsOut = action.rowsOut;
    state.seconds = std::max(0.0, action.seconds);
    messages.addTo(state, action.name);
    if (result.state == GlobalParameters::RunningState::stoppedByUser) {
      state.kind = kind;  // errors that follow from the stop are no failures
    }
    states.push_back(std::move(state));
  }
  return states;
}

}  // namespace kelvarin
