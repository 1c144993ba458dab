// Lets editors change a part of an action: what they set is then what a graph file of it
// would hold.
//
// Used by the setters of the expression actions.
// Threads: the user-interface thread, between runs.
#pragma once

#include <memory>
#include <utility>

#include "host/contract/action_item.h"

namespace kelvarin {

// Replaces a member by `value` as it reads after saving the action. False, and nothing changes: a
// text has a character that no graph file can hold.
template <typename Action, typename Value>
[[nodiscard]] bool setAsReadBack(Action& action, Value Action::*member, Value value) {
  std::swap(action.*member, value);
  const std::unique_ptr<ActionItem> saved(action.clone(action.globalParameters()));
  if (saved == nullptr) {
    std::swap(action.*member, value);
    return false;
  }
  action.*member = std::move(static_cast<Action&>(*saved).*member);
  return true;
}

}  // namespace kelvarin
