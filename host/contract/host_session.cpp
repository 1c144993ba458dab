#include "host/contract/host_session.h"

#include <utility>

namespace kelvarin {

namespace {

thread_local HostSession* currentSession = nullptr;
thread_local const ActionItem* currentAction = nullptr;

}  // namespace

HostSession* HostSession::current() {
  return currentSession;
}

HostSession::Scope::Scope(HostSession* session)
    : m_outer(std::exchange(currentSession, session)),
      m_actionOfOuter(std::exchange(currentAction, nullptr)) {}

HostSession::Scope::~Scope() {
  currentSession = m_outer;
  currentAction = m_actionOfOuter;
}

const ActionItem*& CurrentAction::slot() {
  return currentAction;
}

}  // namespace kelvarin
