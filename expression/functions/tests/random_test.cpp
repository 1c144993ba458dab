#include <cmath>

#include <gtest/gtest.h>

#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

constexpr double kFirstOfSeed1 = 1791095845 / 4294967296.0;
constexpr double kSecondOfSeed1 = 4282876139 / 4294967296.0;

TEST(Random, EveryFunctionTakesTheNextDraw) {
  TableCalls calls;
  calls.context.seed(1);
  EXPECT_EQ(calls.number("rand1", {}), kFirstOfSeed1);
  EXPECT_EQ(calls.number("rand", {numberArgument(8)}), kSecondOfSeed1 * 8);
  calls.context.seed(1);
  EXPECT_EQ(calls.number("randN", {numberArgument(1000)}), std::floor(kFirstOfSeed1 * 1000));
}

TEST(Random, TwoContextsSeededAlikeAgree) {
  TableCalls one;
  TableCalls other;
  one.context.seed(77);
  other.context.seed(77);
  for (int i = 0; i < 2000; ++i) {
    ASSERT_EQ(one.number("rand1", {}), other.number("rand1", {}));
  }
  EXPECT_EQ(TableCalls().number("rand1", {}), 3499211612 / 4294967296.0);
}

}  // namespace
}  // namespace kelvarin
