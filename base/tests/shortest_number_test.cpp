#include "base/shortest_number.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/null_number.h"

namespace kelvarin {

namespace {

std::string shortest(double number) {
  char text[kLongestNumberText];
  return {text, appendShortest(text, number)};
}

// The significant digits of a printed number.
std::string digitsOf(const std::string& text) {
  std::string digits;
  for (const char c : text.substr(0, text.find('e'))) {
    if (c != '-' && c != '.' && (c != '0' || !digits.empty())) {
      digits += c;
    }
  }
  return digits.erase(digits.find_last_not_of('0') + 1);
}

// Reads back to the same bits, and has the digits that the standard library finds.
void expectShortest(double number) {
  const std::string text = shortest(number);
  double read = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
  ASSERT_EQ(result.ptr, text.data() + text.size()) << text;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(number)) << text;
  char other[64];
  const auto printed =
      std::to_chars(other, other + sizeof other, number, std::chars_format::scientific);
  ASSERT_EQ(digitsOf(text), digitsOf(std::string(other, printed.ptr)));
}

}  // namespace

TEST(ShortestNumber, FormsAtTheirBounds) {
  EXPECT_EQ(shortest(0.0001), "0.0001");
  EXPECT_EQ(shortest(0.000123456789012345), "0.000123456789012345");
  EXPECT_EQ(shortest(std::nextafter(0.0001, 0)), "9.999999999999999e-05");
  EXPECT_EQ(shortest(0.0000999), "9.99e-05");
  EXPECT_EQ(shortest(1e-100), "1e-100");
  EXPECT_EQ(shortest(-123.456), "-123.456");
  EXPECT_EQ(shortest(0.3 - 0.1), "0.19999999999999998");
  EXPECT_EQ(shortest(99999999), "99999999");
  EXPECT_EQ(shortest(100000000), "100000000");
  EXPECT_EQ(shortest(999999999.9999999), "999999999.9999999");
  EXPECT_EQ(shortest(9999999999999998), "9999999999999998");
  EXPECT_EQ(shortest(9007199254740994), "9007199254740994");
  EXPECT_EQ(shortest(1e16), "1e+16");
  EXPECT_EQ(shortest(-kInfinity), "-inf");
  EXPECT_EQ(shortest(-std::nan("")), "nan");
  EXPECT_EQ(shortest(-1.7976931348623157e308), "-1.7976931348623157e+308");
  char text[kLongestNumberText];
  EXPECT_EQ(std::string(text, appendWhole(text, 18446744073709551615u)), "18446744073709551615");
  EXPECT_EQ(std::string(text, appendWhole(text, 10000000000000000u)), "10000000000000000");
}

TEST(ShortestNumber, AnyNumberReadsBackAndIsShortest) {
  std::mt19937_64 random(29);
  for (int i = 0; i < 400000; ++i) {
    const auto bits = std::bit_cast<double>(random());
    if (std::isfinite(bits)) {
      expectShortest(bits);
    }
    // Decimals, and their neighbours, which are none.
    const auto whole = static_cast<double>(random() >> random() % 64);
    const double decimal = whole / std::pow(10, static_cast<double>(random() % 20));
    expectShortest(decimal);
    expectShortest(std::nextafter(decimal, 0));
    expectShortest(
        -std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 70)));
  }
}

// Powers of two and ten with their neighbours, of all exponents.
TEST(ShortestNumber, PowersAndTheirNeighbours) {
  const auto expectAround = [](double number) {
    for (const double near : {number, std::nextafter(number, 0), std::nextafter(number, 1e308)}) {
      expectShortest(near);
    }
  };
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    expectAround(std::ldexp(1, exponent));
  }
  for (int exponent = -307; exponent < 308; ++exponent) {
    expectAround(std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr));
  }
}

}  // namespace kelvarin
