#include "host/contract/engine_runner.h"

#include <exception>

#include "host/contract/host_services.h"
#include "host/contract/host_session.h"
#include "host/contract/messages.h"

EngineRunner::~EngineRunner() {
  stop();
  wait();
}

bool EngineRunner::run(int pin, ActionItem* action, int pinType, bool untilFinished) {
  kelvarin::HostServices* services = kelvarin::hostServices();
  if (action == nullptr || isRunning() || m_thread.get_id() == std::this_thread::get_id()) {
    return false;
  }
  m_pinType = pinType;
  if (services == nullptr || !services->runBranch(*this, *action, pin)) {
    MainUI::addLog(LogLevel::information, kelvarin::messages::cannotRunBranch(action->name()));
    return false;
  }
  if (untilFinished) {
    wait();
  }
  return true;
}

void EngineRunner::wait() {
  if (m_thread.joinable() && m_thread.get_id() != std::this_thread::get_id()) {
    m_thread.join();
  }
}

void EngineRunner::start(std::function<void(RunRecord& record)> computation) {
  wait();
  m_isRunning = true;
  m_record.status = GlobalParameters::RunningState::running;
  m_thread = std::thread([this, session = kelvarin::HostSession::current(),
                          work = std::move(computation)] {
    const kelvarin::HostSession::Scope scope(session);
    try {
      work(m_record);
    } catch (const std::exception& exception) {
      m_record.fail();
      MainUI::addLog(LogLevel::error,
                     kelvarin::messages::branchFailed(QString::fromLocal8Bit(exception.what())));
    }
    m_record.endNormally();
    m_isRunning = false;
    computationFinished();
  });
}
