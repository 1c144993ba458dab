#include "host/widgets/background_task.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <QPointer>

namespace kelvarin {

namespace {

// The threads that are at work. Never destroyed, since one may outlive the program's statics.
class RunningThreads {
 public:
  static RunningThreads& instance() {
    static auto* threads = new RunningThreads;
    return *threads;
  }
  void enter() {
    const std::lock_guard lock(m_mutex);
    ++m_count;
  }
  void leave() {
    const std::lock_guard lock(m_mutex);
    --m_count;
    m_left.notify_all();
  }
  // Work that was asked to stop ends soon; what hangs in the system is left behind.
  static void awaitEnd() {
    RunningThreads& threads = instance();
    std::unique_lock lock(threads.m_mutex);
    threads.m_left.wait_for(lock, std::chrono::seconds(1), [&] { return threads.m_count == 0; });
  }

 private:
  RunningThreads() { qAddPostRoutine(&RunningThreads::awaitEnd); }

  std::mutex m_mutex;  // guards m_count
  std::condition_variable m_left;
  int m_count = 0;
};

}  // namespace

// Joins one piece of work and the task that has started it, as long as both are there.
struct BackgroundTask::Ticket {
  std::atomic<bool> isStopped = false;
  std::mutex mutex;  // guards receiver
  BackgroundTask* receiver = nullptr;
};

BackgroundTask::~BackgroundTask() {
  forget();
}

QString BackgroundTask::noMemoryText() {
  return tr("The memory does not suffice.");
}

void BackgroundTask::run(std::function<Report(const IsStopped&)> work) {
  forget();
  const auto ticket = std::make_shared<Ticket>();
  ticket->receiver = this;
  m_current = ticket;
  RunningThreads::instance().enter();
  std::thread([ticket, work = std::move(work)] {
    Report report = work([&ticket] { return ticket->isStopped.load(); });
    const auto deliver = [ticket, report = std::move(report)] {
      const QPointer<BackgroundTask> receiver = ticket->receiver;
      if (receiver == nullptr || receiver->m_current != ticket) {
        return;
      }
      receiver->m_current.reset();
      report();
      if (receiver != nullptr) {
        emit receiver->finished();
      }
    };
    {
      const std::lock_guard lock(ticket->mutex);
      if (ticket->receiver != nullptr) {
        QMetaObject::invokeMethod(ticket->receiver, deliver, Qt::QueuedConnection);
      }
    }
    RunningThreads::instance().leave();
  }).detach();
  emit started();
}

void BackgroundTask::stop() {
  if (m_current) {
    m_current->isStopped = true;
  }
}

void BackgroundTask::forget() {
  if (!m_current) {
    return;
  }
  m_current->isStopped = true;
  const std::lock_guard lock(m_current->mutex);
  m_current->receiver = nullptr;
  m_current.reset();
}

}  // namespace kelvarin
