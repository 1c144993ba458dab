#include "host/tables/csv/csv_number.h"

#include <algorithm>
#include <bit>
#include <random>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

// Digits, with a minus and a point where they may be.
bool isPlain(std::string_view text) {
  text.remove_prefix(text.starts_with('-') ? 1 : 0);
  const auto points = std::count(text.begin(), text.end(), '.');
  const auto digits =
      std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  return digits > 0 && points <= 1 && static_cast<std::size_t>(digits + points) == text.size();
}

}  // namespace

// The short way yields the standard library's bits, and takes every plain number of eight bytes.
TEST(CsvNumber, shortDecimalsAreExact) {
  constexpr std::string_view kBytes = "00112233445566778899..--+e ,/:\xFF";
  std::mt19937 random(23);
  char text[24] = "\"-9.,e7\n";
  for (int i = 0; i < 400000; ++i) {
    const std::size_t size = random() % 10;
    const std::size_t kinds = i % 2 == 0 ? 22 : kBytes.size();
    for (std::size_t at = 0; at < size; ++at) {
      text[8 + at] = kBytes[random() % kinds];
    }
    const std::string_view field(text + 8, size);
    double expected = 0;
    const auto parsed = std::from_chars(field.data(), field.data() + size, expected);
    const bool isNumber = parsed.ec == std::errc() && parsed.ptr == field.data() + size;
    double number = 0;
    const bool isTaken = parseShortDecimal(field, number);
    ASSERT_LE(isTaken, isNumber) << field;
    if (isTaken) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(number), std::bit_cast<std::uint64_t>(expected))
          << field;
    }
    double refusing = 0;
    const bool isRefused = isTaken && !parseShortDecimal<true>(field, refusing);
    ASSERT_EQ(isRefused, isTaken && lostDigits(field, number) == LostDigits::leadingZero) << field;
    ASSERT_EQ(isTaken, size <= 8 && isPlain(field)) << field;
  }
}

TEST(CsvNumber, digitsThatANumberLoses) {
  const auto lost = [](std::string_view field) {
    double number = 0;
    EXPECT_TRUE(parseNumber(field, number)) << field;
    const LostDigits result = lostDigits(field, number);
    EXPECT_LE(result != LostDigits::none, mayHaveLostDigits(field)) << field;
    return result;
  };
  for (const char* kept : {"0",
                           "-0",
                           "+0",
                           "0.5",
                           "-0.5",
                           " 0.0 ",
                           "0e5",
                           ".5",
                           "5.",
                           "nan",
                           "-inf",
                           "1e5",
                           "1e999",
                           "9007199254740992",
                           "-9007199254740994",
                           "10000000000000000000000",
                           "1152921504606846976",
                           "1152921504606846976.00",
                           "0.1234567890123456789",
                           "123456789012345.678",
                           "1234567890123456.7",
                           "12345678901234567890e0",
                           "1.2345678901234567891e18"}) {
    EXPECT_EQ(lost(kept), LostDigits::none) << kept;
  }
  for (const char* zero : {"00", "007", "-01", "+01", "01.5", "00.5", " 01", "\t-007 ", "01e5"}) {
    EXPECT_EQ(lost(zero), LostDigits::leadingZero) << zero;
  }
  for (const char* whole :
       {"9007199254740993", "-9007199254740993", " +9007199254740993", "1234567890123456789",
        "12345678901234567890.0", "1152921504606846976.5", "9007199254740991.9",
        "1234567890123456789.", "99999999999999999999999"}) {
    EXPECT_EQ(lost(whole), LostDigits::wholePart) << whole;
  }
  EXPECT_EQ(lost(std::string(400, '9')), LostDigits::wholePart);
}

TEST(CsvNumber, numbersForPeople) {
  for (const char* number :
       {"1,5", "-1,234.50", "1.234,50", "1,234,567", "12 %", "+3.5%", " 7% "}) {
    EXPECT_TRUE(isNumberForPeople(number)) << number;
  }
  for (const char* text : {"", "%", ",", "1,", ",5", "1,2,3", "1,234,5", "1.2.3", "x,5", "1-2",
                           "52.5,13.4", "2024-01-31", "12:30", "5 % off", "10.0.0.1"}) {
    EXPECT_FALSE(isNumberForPeople(text)) << text;
  }
}

// Around powers of two, against arithmetic on integers.
TEST(CsvNumber, wholeNumbersAreLostExactlyWhereNoDoubleHoldsThem) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 200000; ++i) {
    const std::uint64_t whole = (random() >> (random() % 12)) & ~((1ull << (random() % 12)) - 1);
    const std::string text = std::to_string(whole);
    const int spare = 64 - std::countl_zero(whole) - 53;
    const bool isHeld = spare <= 0 || (whole & ((1ull << spare) - 1)) == 0;
    double number = 0;
    ASSERT_TRUE(parseNumber(text, number));
    ASSERT_EQ(lostDigits(text, number) == LostDigits::none, isHeld) << text;
  }
}

}  // namespace kelvarin
