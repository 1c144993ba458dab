#include "base/result.h"

#include <memory>

#include <gtest/gtest.h>

#include "base/null_number.h"

namespace kelvarin {

namespace {

Result<std::unique_ptr<int>> made(bool isMade) {
  if (!isMade) {
    return Failure{"not made"};
  }
  return std::make_unique<int>(5);
}

TEST(Result, IsAValueOrTheReasonWhyThereIsNone) {
  Result<std::unique_ptr<int>> result = made(true);
  ASSERT_TRUE(result);
  EXPECT_EQ(**result, 5);
  const std::unique_ptr<int> moved = std::move(result).value();
  EXPECT_EQ(*moved, 5);
  EXPECT_EQ(*result, nullptr) << "the value is moved out, not copied";

  const Result<std::unique_ptr<int>> failed = made(false);
  EXPECT_FALSE(failed);
  EXPECT_EQ(failed.error(), "not made");
}

// A value and an error of one type stay apart.
TEST(Result, ValuesMayLookLikeErrors) {
  const Result<std::string> value = std::string("text");
  const Result<std::string> failure = Failure{std::string("text")};
  EXPECT_TRUE(value);
  EXPECT_FALSE(failure);
  EXPECT_TRUE(Status<int>(Done{}));
  EXPECT_EQ(Status<int>(Failure{7}).error(), 7);
}

TEST(NullNumber, IsOnePatternAmongTheNans) {
  EXPECT_TRUE(isNullNumber(kNullNumber));
  EXPECT_FALSE(isNullNumber(kNotANumber));
  EXPECT_FALSE(isNullNumber(std::bit_cast<double>(kNullNumberBits - 1)));
  EXPECT_FALSE(isNullNumber(-kNullNumber)) << "without its sign bit it is another NaN";
  for (const double odd : {kNullNumber, kNotANumber, kInfinity, -kInfinity}) {
    EXPECT_FALSE(isFiniteNumber(odd));
  }
  for (const double finite : {0.0, -0.0, 5e-324, 1.7976931348623157e308, -1.0}) {
    EXPECT_TRUE(isFiniteNumber(finite));
  }
}

}  // namespace

}  // namespace kelvarin
