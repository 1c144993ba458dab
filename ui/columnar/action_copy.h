// A copy of an edited action with parameters of its own, which a background task can use while the
// action changes or goes away.
#pragma once

#include <memory>

#include "host/contract/action_item.h"

namespace kelvarin {

template <typename Action>
class ActionCopy {
 public:
  explicit ActionCopy(Action& action) {
    if (action.globalParameters() != nullptr) {
      m_parameters = *action.globalParameters();
    }
    m_action.reset(static_cast<Action*>(action.clone(&m_parameters)));
  }
  ActionCopy(const ActionCopy&) = delete;
  ActionCopy& operator=(const ActionCopy&) = delete;

  Action& operator*() const { return *m_action; }
  Action* operator->() const { return m_action.get(); }

 private:
  GlobalParameters m_parameters;
  std::unique_ptr<Action> m_action;
};

}  // namespace kelvarin
