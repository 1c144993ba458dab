// Work for an editor that can take long, on a thread of its own.
//
// A task that is started anew forgets the work before it: that work is asked to stop, and its
// result is thrown away. Nobody waits for it, so a disk that does not answer stops no editor; at
// the end of the program it gets a moment.
// Threads: the user-interface thread; the work runs on its own and touches no widget.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <new>

#include <QCoreApplication>
#include <QObject>

#include "base/export.h"
#include "base/result.h"

namespace kelvarin {

class KELVARIN_CORE BackgroundTask : public QObject {
  Q_OBJECT

 public:
  using IsStopped = std::function<bool()>;
  template <typename Value>
  using Work = std::function<Result<Value, QString>(const IsStopped& isStopped)>;
  template <typename Value>
  using Done = std::function<void(const Result<Value, QString>& result)>;

  explicit BackgroundTask(QObject* parent = nullptr) : QObject(parent) {}
  ~BackgroundTask() override;

  // The work has copies of all that it needs. `done` is called on the user-interface thread, unless
  // other work was started meanwhile or the task is gone.
  template <typename Value>
  void start(Work<Value> work, Done<Value> done) {
    run([work = std::move(work), done = std::move(done)](const IsStopped& isStopped) {
      auto result = std::make_shared<Result<Value, QString>>(resultOf(work, isStopped));
      return [result, done] { done(*result); };
    });
  }
  // Asks the work to stop; its result comes all the same.
  void stop();
  // The same, and the result is thrown away.
  void forget();
  bool isRunning() const { return m_current != nullptr; }

 signals:
  void started();
  void finished();

 private:
  struct Ticket;
  using Report = std::function<void()>;

  static QString noMemoryText();
  template <typename Value>
  static Result<Value, QString> resultOf(const Work<Value>& work, const IsStopped& isStopped) {
    try {
      return work(isStopped);
    } catch (const std::bad_alloc&) {
      return Failure{noMemoryText()};
    }
  }
  void run(std::function<Report(const IsStopped&)> work);

  std::shared_ptr<Ticket> m_current;
};

}  // namespace kelvarin
