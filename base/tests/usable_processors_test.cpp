#include "base/usable_processors.h"

#include <gtest/gtest.h>

namespace kelvarin {

TEST(UsableProcessors, AreThoseThatTheProcessMayUse) {
  cpu_set_t all;
  ASSERT_EQ(::sched_getaffinity(0, sizeof all, &all), 0);
  EXPECT_EQ(usableProcessors(), CPU_COUNT(&all));
  int first = 0;
  while (!CPU_ISSET(static_cast<std::size_t>(first), &all)) {
    ++first;
  }
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<std::size_t>(first), &one);
  ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(usableProcessors(), 1);
  EXPECT_EQ(::sched_setaffinity(0, sizeof all, &all), 0);
}

}  // namespace kelvarin
