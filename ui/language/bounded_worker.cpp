#include "ui/language/bounded_worker.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "ui/language/posted_calls.h"

namespace kelvarin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kWatchInterval{50};
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

  explicit Crew(BoundedWorker& owner) : m_owner(owner), m_calls(&owner) {}

  static std::shared_ptr<Crew> started(BoundedWorker& owner, std::deque<Waiting> jobs) {
    auto crew = std::make_shared<Crew>(owner);
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

  // What becomes of a job that has run for too long.
  struct Overdue {
    std::deque<Waiting> given;    // up
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
      overdue.given.push_back({m_running.kind, m_running.serial, {{}, m_running.job.giveUp}});
      m_isGivenUp = true;
    }
    int none = 0;
    overdue.isLeft = jobsLeftBehind.compare_exchange_strong(none, 1);
    std::deque<Waiting>& rest = overdue.isLeft ? overdue.waiting : overdue.given;
    std::move(m_waiting.begin(), m_waiting.end(), std::back_inserter(rest));
    m_waiting.clear();
    if (overdue.isLeft) {
      leave();
    }
    return overdue;
  }

  // The object goes.
  void close() {
    m_calls.close();
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
    m_calls.close();
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
        m_calls.post([owner = &m_owner, kind = m_running.kind, serial = m_running.serial,
                      show = std::move(show)] {
          if (owner->m_latest.value(kind) == serial) {
            show();
          }
        });
      }
    }
  }

  BoundedWorker& m_owner;  // used on its own thread only
  PostedCalls m_calls;
  std::thread m_thread;
  std::mutex m_mutex;  // guards all below, m_running's job apart while it runs
  std::condition_variable m_changed;
  std::deque<Waiting> m_waiting;
  Waiting m_running;
  std::optional<Clock::time_point> m_startedAt;  // of the running job
  bool m_isGivenUp = false;                      // its result is not wanted
  bool m_isClosed = false;
  bool m_isLeft = false;
};

BoundedWorker::BoundedWorker(std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent), m_limit(limit), m_crew(Crew::started(*this, {})) {
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

void BoundedWorker::watch() {
  std::optional<Crew::Overdue> overdue = m_crew->takeOverdue(m_limit);
  if (overdue && overdue->isLeft) {
    m_crew = Crew::started(*this, std::move(overdue->waiting));
  }
  if (m_crew->isIdle()) {
    m_watch.stop();
  }
  if (!overdue) {
    return;
  }
  for (const Crew::Waiting& given : overdue->given) {
    if (m_latest.value(given.kind) == given.serial) {
      given.job.giveUp();
    }
  }
}

}  // namespace kelvarin
