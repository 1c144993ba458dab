#include "expression/functions/random_generator.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(RandomGenerator, GivesTheReferenceSequence) {
  RandomGenerator unseeded;
  EXPECT_EQ(unseeded.draw(), 3499211612u);
  EXPECT_EQ(unseeded.draw(), 581869302u);
  for (int i = 3; i < 10000; ++i) {
    unseeded.draw();
  }
  EXPECT_EQ(unseeded.draw(), 4123659995u);
}

TEST(RandomGenerator, SeedingStartsTheSequenceAgain) {
  RandomGenerator generator;
  generator.draw();
  generator.seed(5489);
  EXPECT_EQ(generator.draw(), 3499211612u);
  generator.seed(1);
  EXPECT_EQ(generator.draw(), 1791095845u);
  generator.seed(1);
  EXPECT_EQ(generator.drawUnit(), 1791095845u / 4294967296.0);
}

}  // namespace
}  // namespace kelvarin
