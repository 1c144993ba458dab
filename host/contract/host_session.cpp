#include "host/contract/host_session.h"

#include <utility>

namespace kelvarin {

namespace {

thread_local HostSession* currentSession = nullptr;
thread_local const ActionItem* currentAction = nullptr;

// Other threads may look at it meanwhile.
void setCurrentAction(const ActionItem* action) {
  std::atomic_ref(currentAction).store(action, std::memory_order_relaxed);
}

}  // namespace

HostSession* HostSession::current() {
  return currentSession;
}

HostSession::Scope::Scope(HostSession* session)
    : m_outer(std::exchange(currentSession, session)), m_actionOfOuter(currentAction) {
  setCurrentAction(nullptr);
}

HostSession::Scope::~Scope() {
  currentSession = m_outer;
  setCurrentAction(m_actionOfOuter);
}

const ActionItem*& CurrentAction::slot() {
  return currentAction;
}

}  // namespace kelvarin
