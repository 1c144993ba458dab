// Work without the interpreter's lock that a signal of the user's, Ctrl-C for instance, ends.
//
// Python's handlers of signals run on the main thread only, when that asks for them. So work of the
// main thread goes on elsewhere, and the main thread asks some twenty times a second.
#pragma once

#include <functional>

#include <nanobind/nanobind.h>

#include "include/kelvarin/kelvarin.h"

namespace kelvarin_python {

// By which work is ended; closed at the end of its life.
class Stop {
 public:
  Stop();
  ~Stop();
  Stop(const Stop&) = delete;
  Stop& operator=(const Stop&) = delete;

  kelvarin_stop handle() const { return m_handle; }
  void request() { kelvarin_stop_request(m_handle); }

 private:
  kelvarin_stop m_handle{};
};

// To be called when the module is loaded and in the child of a fork: the calling thread is the one
// that runs handlers of signals.
void noteMainThread();

// Called with the lock. `work` is done without it, on some thread; where a handler raises an
// exception, `stop` is requested, the work awaited and the exception thrown.
void interruptible(Stop& stop, const std::function<void()>& work);

// For functions that other libraries call with or without the lock. Calls `work` without it. On
// the main thread handlers of signals come first: where one raises an exception, false is returned,
// nothing is done, and the exception comes up in the program soon after.
bool withoutLock(const std::function<void()>& work);

// The same for what must be done in every case. Whoever releases a stream waits for its tasks, and
// these may need the lock for a table of Python's that they read.
void releaseWithoutLock(const std::function<void()>& work);

}  // namespace kelvarin_python
