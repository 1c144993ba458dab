// Lets editors change a part of an action: it is then what a graph file would hold, without
// characters that files cannot have, and with defaults filled in.
//
// Used by the setters of the expression actions.
// Threads: the user-interface thread, between runs.
#pragma once

#include <cassert>
#include <memory>
#include <utility>

#include "host/contract/action_item.h"

namespace kelvarin {

// Replaces a member by `value` as it reads after saving the action.
template <typename Action, typename Value>
void setAsReadBack(Action& action, Value Action::* member, Value value) {
  action.*member = std::move(value);
  const std::unique_ptr<ActionItem> saved(action.clone(action.globalParameters()));
  assert(saved != nullptr);  // what an action writes can be read
  action.*member = std::move(static_cast<Action&>(*saved).*member);
}

}  // namespace kelvarin
