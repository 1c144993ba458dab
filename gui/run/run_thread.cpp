#include "gui/run/run_thread.h"

#include <utility>

#include "host/contract/host_session.h"

namespace kelvarin {

RunThread::RunThread(HostServices* services, std::function<void(RunRecord& record)> work)
    : m_thread([services, work = std::move(work), record = m_record] {
        HostSession session(services);
        const HostSession::Scope scope(&session);
        work(*record);
      }) {}

RunThread::~RunThread() {
  stop();
  m_thread.join();
}

}  // namespace kelvarin
