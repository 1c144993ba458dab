#include "host/contract/host_session.h"

#include <utility>

namespace kelvarin {

namespace {

thread_local HostSession* currentSession = nullptr;
thread_local constinit CurrentAction::Slot currentAction = nullptr;

}  // namespace

HostSession* HostSession::current() {
  return currentSession;
}

HostSession::Scope::Scope(HostSession* session)
    : m_outer(std::exchange(currentSession, session)),
      m_actionOfOuter(currentAction.load(std::memory_order_relaxed)) {
  currentAction.store(nullptr, std::memory_order_relaxed);
}

HostSession::Scope::~Scope() {
  currentSession = m_outer;
  currentAction.store(m_actionOfOuter, std::memory_order_relaxed);
}

CurrentAction::Slot& CurrentAction::slot() {
  return currentAction;
}

}  // namespace kelvarin
