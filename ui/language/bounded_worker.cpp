#include "ui/language/bounded_worker.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <QPointer>

namespace kelvarin {

namespace {

using Clock = std::chrono::steady_clock;

// No event of the application is sent from another thread; results wait for so long.
constexpr std::chrono::milliseconds kWatchInterval{10};
// The longest that a window waits for the job of one that closes.
constexpr std::chrono::milliseconds kLastWait{10};

std::atomic<int> jobsLeftBehind{0};

}  // namespace

// The thread and what it shares with its object.
class BoundedWorker::Crew {
 public:
  struct Waiting {
    int kind = 0;
    quint64 serial = 0;
    Job job;
  };

  static std::shared_ptr<Crew> started(std::deque<Waiting> jobs) {
    auto crew = std::make_shared<Crew>();
    crew->m_waiting = std::move(jobs);
    crew->m_thread = std::thread([crew] { crew->work(); });
    return crew;
  }

  void add(Waiting job) {
    {
      const std::lock_guard lock(m_mutex);
      const auto same = std::find_if(m_waiting.begin(), m_waiting.end(),
                                     [&](const Waiting& one) { return one.kind == job.kind; });
      if (same == m_waiting.end()) {
        m_waiting.push_back(std::move(job));
      } else {
        *same = std::move(job);
      }
    }
    m_changed.notify_all();
  }

  bool isIdle() {
    const std::lock_guard lock(m_mutex);
    return m_waiting.empty() && !m_startedAt;
  }

  // How to show what a job has computed.
  struct Result {
    int kind = 0;
    quint64 serial = 0;
    std::function<void()> show;
  };
  std::vector<Result> takeResults() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_results, {});
  }

  // What becomes of a job that has run for too long.
  struct Overdue {
    std::deque<Waiting> givenUp;
    std::deque<Waiting> waiting;  // for another thread
    bool isLeft = false;          // this thread is left behind
  };

  std::optional<Overdue> takeOverdue(std::chrono::milliseconds limit) {
    const std::lock_guard lock(m_mutex);
    if (!m_startedAt || Clock::now() - *m_startedAt < limit) {
      return std::nullopt;
    }
    Overdue overdue;
    if (!m_isGivenUp) {
      overdue.givenUp.push_back({m_running.kind, m_running.serial, {{}, m_running.job.giveUp}});
      m_isGivenUp = true;
    }
    int none = 0;
    overdue.isLeft = jobsLeftBehind.compare_exchange_strong(none, 1);
    std::deque<Waiting>& rest = overdue.isLeft ? overdue.waiting : overdue.givenUp;
    std::move(m_waiting.begin(), m_waiting.end(), std::back_inserter(rest));
    m_waiting.clear();
    if (overdue.isLeft) {
      leave();
    }
    return overdue;
  }

  // The object goes.
  void close() {
    std::unique_lock lock(m_mutex);
    m_isClosed = true;
    m_waiting.clear();
    m_changed.notify_all();
    if (m_changed.wait_for(lock, kLastWait, [this] { return !m_startedAt; })) {
      lock.unlock();
      m_thread.join();
      return;
    }
    ++jobsLeftBehind;
    leave();
  }

 private:
  // Under the mutex.
  void leave() {
    m_isLeft = true;
    m_thread.detach();
  }

  void work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
      m_changed.wait(lock, [this] { return m_isClosed || !m_waiting.empty(); });
      if (m_isClosed) {
        return;
      }
      m_running = std::move(m_waiting.front());
      m_waiting.pop_front();
      m_startedAt = Clock::now();
      m_isGivenUp = false;
      lock.unlock();
      std::function<void()> show = m_running.job.compute(jobsLeftBehind > 0);
      lock.lock();
      m_startedAt.reset();
      m_changed.notify_all();
      if (m_isLeft) {
        --jobsLeftBehind;
        return;
      }
      if (!m_isGivenUp) {
        m_results.push_back({m_running.kind, m_running.serial, std::move(show)});
      }
    }
  }

  std::thread m_thread;
  std::mutex m_mutex;  // guards all below, m_running's job apart while it runs
  std::condition_variable m_changed;
  std::deque<Waiting> m_waiting;
  std::vector<Result> m_results;
  Waiting m_running;
  std::optional<Clock::time_point> m_startedAt;  // of the running job
  bool m_isGivenUp = false;                      // its result is not wanted
  bool m_isClosed = false;
  bool m_isLeft = false;
};

BoundedWorker::BoundedWorker(std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent), m_limit(limit), m_crew(Crew::started({})) {
  m_watch.setInterval(kWatchInterval);
  connect(&m_watch, &QTimer::timeout, this, &BoundedWorker::watch);
}

BoundedWorker::~BoundedWorker() {
  m_crew->close();
}

void BoundedWorker::run(int kind, Job job) {
  m_latest[kind] = ++m_serial;
  m_crew->add({kind, m_serial, std::move(job)});
  m_watch.start();
}

bool BoundedWorker::isOneLeftBehind() {
  return jobsLeftBehind > 0;
}

// A result that is shown may be the end of this object.
void BoundedWorker::watch() {
  std::optional<Crew::Overdue> overdue = m_crew->takeOverdue(m_limit);
  const bool isIdle = m_crew->isIdle();
  std::vector<Crew::Result> results = m_crew->takeResults();
  if (overdue && overdue->isLeft) {
    m_crew = Crew::started(std::move(overdue->waiting));
  } else if (isIdle) {
    m_watch.stop();
  }
  if (overdue) {
    for (Crew::Waiting& job : overdue->givenUp) {
      results.push_back({job.kind, job.serial, std::move(job.job.giveUp)});
    }
  }
  const QPointer<BoundedWorker> self(this);
  for (const Crew::Result& result : results) {
    if (self != nullptr && m_latest.value(result.kind) == result.serial) {
      result.show();
    }
  }
}

}  // namespace kelvarin
