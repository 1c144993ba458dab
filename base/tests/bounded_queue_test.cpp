#include "base/bounded_queue.h"

#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace kelvarin {

TEST(BoundedQueue, EveryElementArrivesOnceInOrderAndNoMoreThanTheCapacityWait) {
  BoundedQueue<std::unique_ptr<int>> queue(3);
  std::atomic<int> pushed = 0;
  std::thread producer([&] {
    for (int i = 0; i < 2000; ++i) {
      ASSERT_TRUE(queue.waitForSpace());
      ASSERT_TRUE(queue.push(std::make_unique<int>(i)));
      ++pushed;
    }
    queue.finish();
  });
  int popped = 0;
  while (const auto element = queue.pop()) {
    EXPECT_EQ(**element, popped);
    ++popped;
    EXPECT_LE(pushed, popped + 3);
  }
  producer.join();
  EXPECT_EQ(popped, 2000);
  EXPECT_FALSE(queue.pop());
}

TEST(BoundedQueue, StoppingEndsTheWaitOfEitherSide) {
  BoundedQueue<int> full(1);
  ASSERT_TRUE(full.push(1));
  std::thread producer([&] { EXPECT_FALSE(full.push(2)); });
  full.stop();
  producer.join();
  EXPECT_FALSE(full.waitForSpace());
  EXPECT_FALSE(full.pop()) << "elements are dropped";

  BoundedQueue<int> empty(1);
  std::thread consumer([&] { EXPECT_FALSE(empty.pop()); });
  empty.stop();
  consumer.join();
}

}  // namespace kelvarin
