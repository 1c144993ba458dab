// Calls that other threads ask the user-interface thread to make.
//
// What a call holds passes under a lock of this class, so the order of events does not rest on the
// event queue alone.
// Used by: edit_services.h, and what works on threads of its own.
// Threads: made and destroyed on the user-interface thread, where the calls are made, in order;
// post() is for any thread. It outlives those who post.
#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include <QObject>

namespace kelvarin {

class PostedCalls : public QObject {
  Q_OBJECT

 public:
  void post(std::function<void()> call);

 private slots:
  void makeCall();

 private:
  std::mutex m_mutex;  // guards m_calls
  std::deque<std::function<void()>> m_calls;
};

}  // namespace kelvarin
