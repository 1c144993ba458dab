#include "host/tables/files/output_queue.h"

#include <chrono>
#include <utility>

#include "host/contract/host_session.h"

namespace kelvarin {

namespace {

constexpr auto kBetweenLooks = std::chrono::milliseconds(20);
// Enough that the task rarely has to be begun anew.
constexpr std::size_t kMaxBytesUnwritten = 4 << 20;

}  // namespace

// Writes until nothing waits.
class OutputQueue::Task final : public PoolTask {
 public:
  explicit Task(OutputQueue& queue) : m_queue(queue) {}

  void run() override {
    const HostSession::Scope session(m_queue.m_session);
    const CurrentAction current(m_queue.m_writer);
    m_queue.writeWaiting();
  }

 private:
  OutputQueue& m_queue;
};

void OutputQueue::start(TaskPool* pool, const ActionItem* writer) {
  static_cast<void>(drop());
  m_pool = m_file.isStream() ? nullptr : pool;
  m_writer = writer;
  m_session = HostSession::current();
  m_error.clear();
  m_isErrorShown = false;
  m_exception = nullptr;
}

Status<QString> OutputQueue::append(std::shared_ptr<const void> owner, std::string_view bytes) {
  if (m_pool == nullptr) {
    return m_file.write(bytes.data(), bytes.size());
  }
  std::shared_ptr<Task> begun;
  {
    std::unique_lock lock(m_mutex);
    waitUntilAtMost(kMaxBytesUnwritten, lock);
    if (hasFailed()) {
      return failure();
    }
    m_waiting.owners.push_back(std::move(owner));
    m_waiting.pieces.push_back(bytes);
    m_waiting.size += bytes.size();
    if (m_task == nullptr) {
      m_task = std::make_shared<Task>(*this);
      begun = m_task;
    }
  }
  if (begun != nullptr) {
    m_pool->submit(std::move(begun));
  }
  return Done{};
}

Status<QString> OutputQueue::finish() {
  std::unique_lock lock(m_mutex);
  waitUntilAtMost(0, lock);
  return failure();
}

Status<QString> OutputQueue::drop() {
  std::unique_lock lock(m_mutex);
  m_waiting = {};
  if (m_task != nullptr && m_task->claim()) {
    m_task = nullptr;
  }
  m_changed.wait(lock, [this] { return m_task == nullptr; });
  if (m_error.isEmpty() || m_isErrorShown) {
    return Done{};
  }
  m_isErrorShown = true;
  return Failure{m_error};
}

Status<QString> OutputQueue::failure() {
  if (m_exception) {
    std::rethrow_exception(m_exception);
  }
  if (m_error.isEmpty()) {
    return Done{};
  }
  m_isErrorShown = true;
  return Failure{m_error};
}

// The task first, if nobody has begun it; then anything else that can be done meanwhile.
void OutputQueue::waitUntilAtMost(std::size_t bytes, std::unique_lock<std::mutex>& lock) {
  const auto isReached = [&] {
    return m_task == nullptr || (bytes > 0 && m_waiting.size + m_bytesAtWork <= bytes);
  };
  while (!isReached()) {
    const std::shared_ptr<Task> task = m_task;
    lock.unlock();
    bool hasWorked = true;
    if (task->claim()) {
      task->run();
    } else {
      hasWorked = m_pool->runOne();
    }
    lock.lock();
    if (!hasWorked) {
      const CurrentAction nobody(nullptr);
      m_changed.wait_for(lock, kBetweenLooks, isReached);
    }
  }
}

void OutputQueue::writeWaiting() {
  std::unique_lock lock(m_mutex);
  while (m_waiting.size > 0 && !hasFailed()) {
    Waiting writing = std::exchange(m_waiting, {});
    m_bytesAtWork = writing.size;
    lock.unlock();
    write(writing.pieces);
    writing = {};
    lock.lock();
    m_bytesAtWork = 0;
    m_changed.notify_all();
  }
  m_task = nullptr;
  m_changed.notify_all();
}

void OutputQueue::write(std::span<const std::string_view> pieces) {
  try {
    if (const Status<QString> status = m_file.write(pieces); !status) {
      const std::lock_guard lock(m_mutex);
      m_error = status.error();
    }
  } catch (...) {
    const std::lock_guard lock(m_mutex);
    m_exception = std::current_exception();
  }
}

}  // namespace kelvarin
