#include "columnar/codecs/number_ranges.h"

#include <bit>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "base/null_number.h"

namespace kelvarin {

namespace {

std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// One number among others that are all 2.0, at every index of the lanes and of the rest.
template <typename Use>
void atEveryIndex(std::uint64_t number, Use use) {
  for (std::size_t rows = 1; rows <= 21; ++rows) {
    for (std::size_t index = 0; index < rows; ++index) {
      std::vector<std::uint64_t> numbers(rows, bits(2.0));
      numbers[index] = number;
      use(numbers, index);
    }
  }
}

}  // namespace

TEST(NumberRanges, ANumberIsSeenWhereverItStands) {
  for (const double number : {-0.0, -1e300, 5e-324, 1e300, kInfinity, -kInfinity}) {
    atEveryIndex(bits(number), [&](const auto& numbers, std::size_t) {
      const auto range = kernels::rangeOf(numbers);
      EXPECT_TRUE(range.hasValues && !range.hasMissing && !range.hasNotANumber);
      const double other = numbers.size() == 1 ? number : 2.0;
      EXPECT_EQ(bits(range.lowest), bits(std::min(number, other)));
      EXPECT_EQ(bits(range.highest), bits(std::max(number, other)));
    });
  }
}

TEST(NumberRanges, MissingNumbersAndOtherNansChangeNoBound) {
  const std::uint64_t none[] = {kNullNumberBits, kNotANumberBits, 0x7FF8000000000000,
                                0x7FF0000000000001};
  for (const std::uint64_t number : none) {
    atEveryIndex(number, [&](const auto& numbers, std::size_t) {
      const auto range = kernels::rangeOf(numbers);
      EXPECT_EQ(range.hasMissing, number == kNullNumberBits);
      EXPECT_EQ(range.hasNotANumber, number != kNullNumberBits);
      EXPECT_EQ(range.hasValues, numbers.size() > 1);
      EXPECT_EQ(range.lowest, numbers.size() > 1 ? 2.0 : 0.0);
      EXPECT_EQ(range.highest, range.lowest);
    });
  }
  const std::uint64_t zeros[] = {bits(0.0), bits(-0.0), bits(0.0)};
  EXPECT_TRUE(std::signbit(kernels::rangeOf(zeros).lowest));
  EXPECT_FALSE(std::signbit(kernels::rangeOf(zeros).highest));
}

TEST(NumberRanges, ScalingIsExactForEveryNumberOrForNone) {
  struct Case {
    double number;
    int exponent;
    bool isExact;
    std::int64_t integer;
  };
  const double limit = std::ldexp(1.0, 50);
  const Case cases[] = {{2.25, 2, true, 225},
                        {-2.25, 2, true, -225},
                        {2.25, 1, false, 0},
                        {-0.0, 0, false, 0},
                        {0.0, 3, true, 0},
                        {limit - 1, 0, true, (1ll << 50) - 1},
                        {1 - limit, 0, true, 1 - (1ll << 50)},
                        {limit, 0, false, 0},
                        {1e300, 0, false, 0},
                        {kInfinity, 0, false, 0},
                        {std::nan(""), 1, false, 0},
                        {0.1 + 0.2, 1, false, 0},
                        {0.3, 1, true, 3},
                        {1e-13, 13, true, 1}};
  for (const Case& test : cases) {
    EXPECT_EQ(kernels::isExactScaled(bits(test.number), test.exponent), test.isExact);
    atEveryIndex(bits(test.number), [&](const auto& numbers, std::size_t index) {
      std::vector<std::int64_t> integers(numbers.size());
      const auto range = kernels::scale(numbers, test.exponent, integers.data());
      ASSERT_EQ(range.isExact, test.isExact) << test.number << " of " << numbers.size();
      if (!test.isExact) {
        return;
      }
      const auto others = static_cast<std::int64_t>(2 * kernels::powerOfTen(test.exponent));
      EXPECT_EQ(integers[index], test.integer);
      EXPECT_EQ(range.lowest, numbers.size() == 1 ? test.integer : std::min(test.integer, others));
      EXPECT_EQ(range.highest, numbers.size() == 1 ? test.integer : std::max(test.integer, others));
    });
  }
  atEveryIndex(kNullNumberBits, [](const auto& numbers, std::size_t index) {
    std::vector<std::int64_t> integers(numbers.size());
    const auto range = kernels::scale(numbers, 1, integers.data());
    EXPECT_TRUE(range.isExact && range.hasMissing);
    EXPECT_EQ(range.hasValues, numbers.size() > 1);
    EXPECT_EQ(integers[index], kernels::kMissingInteger);
  });
}

}  // namespace kelvarin
