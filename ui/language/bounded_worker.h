// Does one job after the other in a thread of its own, and leaves behind what does not come back.
//
// A job that runs longer than the limit goes on in a thread that nobody waits for, with what it was
// given as copies; at most one in the process. While there is one, jobs are asked to be careful.
// Used by FormulaService.
// Threads: the operations on the thread of the object; jobs on the worker's.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <QHash>
#include <QObject>
#include <QTimer>

namespace kelvarin {

class BoundedWorker : public QObject {
  Q_OBJECT

 public:
  struct Job {
    // On the worker's thread. Returns what is to be done with the result on the object's thread.
    std::function<std::function<void()>(bool isCareful)> compute;
    // On the object's thread, in place of the result, when the job takes too long.
    std::function<void()> giveUp;
  };

  explicit BoundedWorker(std::chrono::milliseconds limit, QObject* parent = nullptr);
  // Waits for a job 10 ms at most, and then leaves it behind.
  ~BoundedWorker() override;

  // Replaces a job of this kind that waits; the results of older ones of the kind are not shown.
  void run(int kind, Job job);
  // Some job, of this object or another one, did not come back.
  static bool isOneLeftBehind();

 private:
  class Crew;
  void watch();

  std::chrono::milliseconds m_limit;
  std::shared_ptr<Crew> m_crew;  // shared with its thread
  QTimer m_watch;                // runs while there are jobs
  quint64 m_serial = 0;
  QHash<int, quint64> m_latest;  // the serial of each kind's newest job
};

}  // namespace kelvarin
