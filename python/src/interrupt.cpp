#include "python/src/interrupt.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>

#include "python/src/status.h"

namespace kelvarin_python {

namespace {

constexpr std::chrono::milliseconds kBetweenSignals{50};

std::thread::id mainThread;

// Raised by the interpreter when it is back in Python code. Guarded by the interpreter's lock.
PyObject* postponedException = nullptr;

int raisePostponed(void*) {
  PyObject* exception = std::exchange(postponedException, nullptr);
  if (exception == nullptr) {
    return 0;
  }
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(exception)), exception);
  Py_DECREF(exception);
  return -1;
}

void postpone(const nb::python_error& error) {
  PyObject* exception = error.value().ptr();
  Py_XINCREF(exception);
  Py_XDECREF(std::exchange(postponedException, exception));
  Py_AddPendingCall(raisePostponed, nullptr);
}

bool signalHandlersAreQuiet() {
  if (std::this_thread::get_id() != mainThread || PyErr_CheckSignals() == 0) {
    return true;
  }
  postpone(nb::python_error());
  return false;
}

// With the lock, which `before` says whether the caller had it; that is so again at the end.
void unlocked(PyGILState_STATE before, const std::function<void()>& work) {
  if (before == PyGILState_UNLOCKED) {
    PyGILState_Release(before);
    work();
    return;
  }
  PyThreadState* state = PyEval_SaveThread();
  work();
  PyEval_RestoreThread(state);
  PyGILState_Release(before);
}

// Work on a thread of its own.
class Work {
 public:
  explicit Work(const std::function<void()>& work)
      : m_thread([this, &work] {
          work();
          const std::lock_guard lock(m_mutex);
          m_isDone = true;
          m_done.notify_one();
        }) {}
  ~Work() { m_thread.join(); }

  bool isDoneWithin(std::chrono::milliseconds time) {
    const nb::gil_scoped_release release;
    std::unique_lock lock(m_mutex);
    return m_done.wait_for(lock, time, [this] { return m_isDone; });
  }
  void wait() {
    const nb::gil_scoped_release release;
    std::unique_lock lock(m_mutex);
    m_done.wait(lock, [this] { return m_isDone; });
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_done;
  bool m_isDone = false;
  std::thread m_thread;
};

}  // namespace

Stop::Stop() {
  if (kelvarin_stop_new(&m_handle) != KELVARIN_OK) {
    throw std::bad_alloc();
  }
}

Stop::~Stop() {
  kelvarin_stop_close(m_handle);
}

void noteMainThread() {
  mainThread = std::this_thread::get_id();
}

void interruptible(Stop& stop, const std::function<void()>& work) {
  if (std::this_thread::get_id() != mainThread) {
    const nb::gil_scoped_release release;
    work();
    return;
  }
  Work running(work);
  while (!running.isDoneWithin(kBetweenSignals)) {
    if (PyErr_CheckSignals() != 0) {
      nb::python_error interruption;
      stop.request();
      running.wait();
      throw interruption;
    }
  }
}

bool withoutLock(const std::function<void()>& work) {
  // A thread that Python does not know has no lock to release.
  if (PyGILState_GetThisThreadState() == nullptr) {
    work();
    return true;
  }
  const PyGILState_STATE before = PyGILState_Ensure();
  const bool goesOn = signalHandlersAreQuiet();
  unlocked(before, goesOn ? work : [] {});
  return goesOn;
}

void releaseWithoutLock(const std::function<void()>& work) {
  if (PyGILState_GetThisThreadState() == nullptr) {
    work();
    return;
  }
  unlocked(PyGILState_Ensure(), work);
}

}  // namespace kelvarin_python
