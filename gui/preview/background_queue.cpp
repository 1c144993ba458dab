#include "gui/preview/background_queue.h"

#include <new>
#include <utility>

namespace kelvarin {

BackgroundQueue::BackgroundQueue(QObject* parent) : QObject(parent), m_thread([this] { work(); }) {}

BackgroundQueue::~BackgroundQueue() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    m_waiting.clear();
    if (m_atWork != nullptr) {
      *m_atWork = true;
    }
  }
  m_changed.notify_one();
  m_thread.join();
}

std::shared_ptr<StopFlag> BackgroundQueue::add(Work work, bool isUrgent) {
  auto isStopped = std::make_shared<StopFlag>(false);
  {
    const std::lock_guard lock(m_mutex);
    m_waiting.insert(isUrgent ? m_waiting.begin() : m_waiting.end(), {std::move(work), isStopped});
  }
  m_changed.notify_one();
  return isStopped;
}

void BackgroundQueue::work() {
  while (true) {
    Piece piece;
    {
      std::unique_lock lock(m_mutex);
      m_atWork = nullptr;
      m_changed.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
      if (m_isEnding) {
        return;
      }
      piece = std::move(m_waiting.front());
      m_waiting.pop_front();
      m_atWork = piece.isStopped;
    }
    if (*piece.isStopped) {
      continue;
    }
    if (Report report = reportOf(piece); report != nullptr) {
      m_reports.post([report = std::move(report), isStopped = piece.isStopped] {
        if (!*isStopped) {
          report();
        }
      });
    }
  }
}

BackgroundQueue::Report BackgroundQueue::reportOf(const Piece& piece) {
  try {
    return piece.work(*piece.isStopped);
  } catch (const std::bad_alloc&) {
    return [this] { emit ranOutOfMemory(); };
  }
}

}  // namespace kelvarin
