#include "host/engine/activity_sampler.h"

#include <algorithm>

namespace kelvarin {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr nanoseconds kShortestInterval = std::chrono::microseconds(250);
constexpr nanoseconds kLongestInterval = milliseconds(5);
constexpr int kIntervalsOfTheTimePassed = 100;
constexpr milliseconds kReportInterval{100};

}  // namespace

ActivitySampler::ActivitySampler(const std::vector<const ActionItem*>& actions,
                                 ProgressMeter& meter)
    : m_nanoseconds(actions.size()), m_meter(meter), m_threads{&CurrentAction::slot()} {
  for (std::size_t i = 0; i < actions.size(); ++i) {
    if (actions[i] != nullptr) {
      m_indexOfAction.emplace(actions[i], i);
    }
  }
  m_thread = std::thread([this] { watch(); });
}

ActivitySampler::~ActivitySampler() {
  stop();
}

void ActivitySampler::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_mustEnd = true;
  }
  m_ending.notify_one();
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void ActivitySampler::watchThisThread() {
  const std::lock_guard lock(m_mutex);
  m_threads.push_back(&CurrentAction::slot());
}

double ActivitySampler::seconds(int action) const {
  const nanoseconds time(
      m_nanoseconds[static_cast<std::size_t>(action)].load(std::memory_order_relaxed));
  return std::chrono::duration<double>(time).count();
}

void ActivitySampler::watch() {
  const Clock::time_point start = Clock::now();
  Clock::time_point last = start;
  Clock::time_point lastReport = start;
  std::unique_lock lock(m_mutex);
  while (!m_mustEnd) {
    const nanoseconds interval = std::clamp<nanoseconds>((last - start) / kIntervalsOfTheTimePassed,
                                                         kShortestInterval, kLongestInterval);
    m_ending.wait_for(lock, interval);
    const Clock::time_point now = Clock::now();
    addTime(now - last);
    last = now;
    if (now - lastReport >= kReportInterval) {
      lastReport = now;
      m_meter.askForReport();
    }
  }
}

void ActivitySampler::addTime(nanoseconds time) {
  for (const CurrentAction::Slot* thread : m_threads) {
    const auto found = m_indexOfAction.find(thread->load(std::memory_order_relaxed));
    if (found != m_indexOfAction.end()) {
      m_nanoseconds[found->second].fetch_add(time.count(), std::memory_order_relaxed);
    }
  }
}

}  // namespace kelvarin
