#include "expression/functions/random_generator.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(RandomGenerator, HasTheReferenceSequence) {
  RandomGenerator unseeded;
  EXPECT_EQ(unseeded(), 3499211612u);
  EXPECT_EQ(unseeded(), 581869302u);
  unseeded.discard(9997);
  EXPECT_EQ(unseeded(), 4123659995u);
  unseeded.seed(1);
  EXPECT_EQ(unseeded(), 1791095845u);
}

TEST(RandomGenerator, DrawsAreBelowOne) {
  RandomGenerator generator(1);
  EXPECT_EQ(drawUnit(generator), 1791095845u / 4294967296.0);
}

}  // namespace
}  // namespace kelvarin
