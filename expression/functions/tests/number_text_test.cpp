// Numbers become the texts that printf writes.

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>

#include <gtest/gtest.h>

#include "expression/functions/number_scanner.h"
#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

std::string printed(const char* format, double number) {
  char text[400];
  const int length = std::snprintf(text, sizeof text, format, number);
  return {text, static_cast<std::size_t>(length)};
}

void expectAsPrinted(TableCalls& calls, double number) {
  ASSERT_EQ(calls.text("ftoa", {numberArgument(number)}), printed("%g", number));
  const double whole = std::trunc(number);
  ASSERT_EQ(calls.text("itoa", {numberArgument(number)}), printed("%.0f", whole == 0 ? 0 : whole));
  if (number >= 0 && number < 0x1p64) {
    char digits[20];
    std::snprintf(digits, sizeof digits, "%llx", static_cast<unsigned long long>(number));
    ASSERT_EQ(calls.text("ftoh", {numberArgument(number)}), digits);
  }
}

TEST(NumberText, IsAsPrintedForAllFiniteNumbers) {
  TableCalls calls;
  for (const double number : {0.0, -0.0, 10000.25, 10000.75, 0.5, 1.0, 999999.5, 1e6, 123456.5,
                              9.999995, 0.0001, 0.00001, 5e-324, 1.7976931348623157e308}) {
    expectAsPrinted(calls, number);
    expectAsPrinted(calls, -number);
  }
  std::mt19937_64 random(7);
  constexpr int rounds = 150'000;
  for (int i = 0; i < rounds; ++i) {
    const auto anyBits = std::bit_cast<double>(random());
    if (std::isfinite(anyBits)) {
      expectAsPrinted(calls, anyBits);
    }
    // Many ties between two numbers of six digits.
    expectAsPrinted(calls, static_cast<double>(random() % 40'000'000) / 64.0);
    // From seven to twelve digits around the point, many of them near such a tie.
    const double whole = static_cast<double>(random() % 10'000'000 * 10 + 5) * 1e4 +
                         static_cast<double>(random() % 5) - 2.0;
    expectAsPrinted(calls, whole / std::pow(10.0, static_cast<double>(random() % 17)));
  }
}

// Also of texts that look like one: other signs, two points, more digits than it takes.
TEST(NumberText, PlainDecimalsAreThoseOfTheStandardLibrary) {
  constexpr std::string_view kSigns = "0123456789012345678901234567890123456789..-+e,";
  std::mt19937 random(3);
  int read = 0;
  for (int i = 0; i < 400'000; ++i) {
    std::string text(random() % 2, '-');
    for (auto left = random() % 19; left > 0; --left) {
      text += kSigns[random() % kSigns.size()];
    }
    double expected = 0.0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, expected);
    const std::optional<std::string_view> found = findNumber(text, NumberForm::real);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(numberIn(text)),
              std::bit_cast<std::uint64_t>(found ? valueOfNumber(*found) : kNullNumber))
        << text;
    const std::optional<double> plain = plainDecimal(text);
    if (plain) {
      ++read;
      ASSERT_TRUE(parsed.ec == std::errc() && parsed.ptr == end) << text;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(*plain), std::bit_cast<std::uint64_t>(expected))
          << text;
    }
  }
  EXPECT_GT(read, 100'000);
  EXPECT_EQ(plainDecimal("-0.125"), -0.125);
  EXPECT_EQ(plainDecimal("123456789012345"), 123456789012345.0);
}

}  // namespace
}  // namespace kelvarin
