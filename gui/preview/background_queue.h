// Work of a preview beside the user-interface thread, one piece after the other.
//
// A piece returns a report, which is called on the user-interface thread. Destroying the queue
// stops the piece that is at work and waits for it, so pieces look at their flag often.
// Threads: the user-interface thread; add() from any.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include <QObject>

#include "gui/threads/posted_calls.h"

namespace kelvarin {

using StopFlag = std::atomic<bool>;

class BackgroundQueue : public QObject {
  Q_OBJECT

 public:
  using Report = std::function<void()>;
  using Work = std::function<Report(const StopFlag& isStopped)>;

  explicit BackgroundQueue(QObject* parent = nullptr);
  ~BackgroundQueue() override;

  // What is returned stops the work when it is set, and then its report is thrown away. Urgent work
  // goes before all that waits.
  std::shared_ptr<StopFlag> add(Work work, bool isUrgent = false);

 signals:
  // A piece of work needed more memory than there is, and has no report.
  void ranOutOfMemory();

 private:
  struct Piece {
    Work work;
    std::shared_ptr<StopFlag> isStopped;
  };

  void work();
  Report reportOf(const Piece& piece);

  PostedCalls m_reports;
  std::mutex m_mutex;  // guards what follows, up to the thread
  std::condition_variable m_changed;
  std::deque<Piece> m_waiting;
  std::shared_ptr<StopFlag> m_atWork;
  bool m_isEnding = false;
  std::thread m_thread;
};

}  // namespace kelvarin
