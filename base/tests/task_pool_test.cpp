#include "base/task_pool.h"

#include <chrono>
#include <semaphore>

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

class CountedTask final : public PoolTask {
 public:
  CountedTask(std::atomic<int>& runs, std::counting_semaphore<>& done)
      : m_runs(runs), m_done(done) {}
  void run() override {
    ++m_runs;
    m_done.release();
  }

 private:
  std::atomic<int>& m_runs;
  std::counting_semaphore<>& m_done;
};

// They come while the threads look for them, while they fall asleep and while they sleep; nobody
// helps, so that one that is overlooked is never carried out.
TEST(TaskPool, NoTaskIsOverlookedHoweverTheyCome) {
  for (const int threads : {1, 3}) {
    std::atomic<int> runs = 0;
    std::counting_semaphore<> done(0);
    TaskPool pool(threads, {}, 2);
    for (int i = 0; i < 600; ++i) {
      const int tasks = 1 + i % 3;
      for (int task = 0; task < tasks; ++task) {
        pool.submit(std::make_shared<CountedTask>(runs, done));
      }
      for (int task = 0; task < tasks; ++task) {
        ASSERT_TRUE(done.try_acquire_for(std::chrono::seconds(20))) << "after " << runs << " tasks";
      }
      std::this_thread::sleep_for(std::chrono::microseconds(i % 4 * 50));
    }
    EXPECT_EQ(runs, 1200);
  }
}

}  // namespace
}  // namespace kelvarin
