// A look at what another thread is about to do, before this one goes to sleep for it.
//
// To sleep and be woken takes up to a hundred microseconds, and a thread that is woken often comes
// to the processor of the one that wakes it, so that both share one and another stays idle. Where
// waits are that short, looking again and again takes less. Where the last one was not, nobody
// looks: threads that wait for long leave the processors to others.
// Used by: the pool, and the pipelines of a run.
// Threads: one.
#pragma once

#include <chrono>

#include <immintrin.h>
#include <sched.h>

namespace kelvarin {

class ShortWait {
 public:
  // Whether `isReady()` came true meanwhile; it is asked on this thread.
  template <typename IsReady>
  bool look(IsReady isReady) {
    m_begin = Clock::now();
    if (!m_isLikely) {
      return false;
    }
    do {
      for (int i = 0; i < kLooksBetweenTimes; ++i) {
        if (isReady()) {
          return true;
        }
        _mm_pause();
      }
      ::sched_yield();
    } while (Clock::now() - m_begin < kLongestLook);
    return false;
  }
  // What was waited for has come, after a sleep.
  void noteEnd() { m_isLikely = Clock::now() - m_begin < kShortSleep; }

 private:
  using Clock = std::chrono::steady_clock;

  static constexpr int kLooksBetweenTimes = 64;
  static constexpr auto kLongestLook = std::chrono::microseconds(100);
  static constexpr auto kShortSleep = std::chrono::microseconds(400);

  Clock::time_point m_begin;
  bool m_isLikely = true;
};

}  // namespace kelvarin
