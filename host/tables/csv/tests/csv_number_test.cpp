#include "host/tables/csv/csv_number.h"

#include <algorithm>
#include <bit>
#include <random>

#include <gtest/gtest.h>

#include "host/tables/csv/csv_indexer.h"
#include "host/tables/csv/csv_values.h"

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

// The quick way yields the standard library's bits, and takes every plain number that is a whole
// one below 2^53 without its point, unless the point is the first of 17 bytes.
TEST(CsvNumber, plainDecimalsAreExact) {
  constexpr std::string_view kBytes = "00112233445566778899..--+e ,/:\xFF";
  constexpr std::size_t kBefore = 17;
  std::mt19937 random(23);
  char text[64] = "\"-9.,e7\n\"-9.,e7\n5";
  for (int i = 0; i < 1000000; ++i) {
    const std::size_t size = random() % (i % 3 == 0 ? 20 : 10);
    const std::size_t kinds = i % 2 == 0 ? 21 : kBytes.size();
    for (std::size_t at = 0; at < size; ++at) {
      text[kBefore + at] = kBytes[random() % kinds];
    }
    const std::string_view field(text + kBefore, size);
    double expected = 0;
    const auto parsed = std::from_chars(field.data(), field.data() + size, expected);
    const bool isNumber = parsed.ec == std::errc() && parsed.ptr == field.data() + size;
    double number = 0;
    const bool isTaken = parsePlainDecimal(field, number);
    ASSERT_LE(isTaken, isNumber) << field;
    if (isTaken) {
      ASSERT_TRUE(hasSameBits(number, expected)) << field;
    }
    double refusing = 0;
    const bool isRefused = isTaken && !parsePlainDecimal<true>(field, refusing);
    ASSERT_EQ(isRefused, isTaken && lostDigits(field, number) == LostDigits::leadingZero) << field;
    std::string digits(field.starts_with('-') ? field.substr(1) : field);
    const std::size_t maxDigits = digits.starts_with('.') ? 15 : 16;
    std::erase(digits, '.');
    const bool isExact =
        digits.size() <= maxDigits && std::strtoll(digits.c_str(), nullptr, 10) < 1LL << 53;
    ASSERT_EQ(isTaken, isPlain(field) && isExact) << field;
  }
}

// Most fields of the block are read several at once, in ways that single ones are not.
TEST(CsvNumber, columnsAreReadAsEachOfTheirFields) {
  constexpr std::string_view kBytes = "00112233445566778899..--+e x/:\xFF";
  constexpr std::size_t kColumns = 3;
  constexpr int kRows = 997;
  std::mt19937 random(31);
  for (int round = 0; round < 300; ++round) {
    CsvDialect dialect;
    dialect.nullText = std::vector<std::string>{"", "5", "x"}[static_cast<std::size_t>(round % 3)];
    std::string text;
    std::vector<std::string> fields;
    std::vector<bool> areQuoted;
    for (std::size_t i = 0; i < kColumns * kRows; ++i) {
      std::string& field = fields.emplace_back();
      const std::size_t kinds = random() % 4 == 0 ? kBytes.size() : random() % 2 == 0 ? 22 : 20;
      for (std::size_t size = random() % (round % 4 == 0 ? 19 : 9); size > 0; --size) {
        field += kBytes[random() % kinds];
      }
      areQuoted.push_back(random() % 16 == 0);
      const char* quote = areQuoted.back() ? "\"" : "";
      text += quote + field + quote + (i % kColumns + 1 == kColumns ? '\n' : ',');
    }
    CsvBlock block;
    block.reserve(text.size(), 0);
    std::copy(text.begin(), text.end(), block.bytes());
    const CsvIndex index = CsvIndexer(dialect, kColumns).index(block, text.size(), true);
    block.setRows(index.rowCount, kColumns);
    ASSERT_EQ(index.rowCount, kRows);
    for (std::size_t column = 0; column < kColumns; ++column) {
      const bool keepsDigits = round % 2 == 0;
      FieldConverter converter(block, column, MetaTypeColumn::number,
                               keepsDigits ? DigitRule::mustBeKept : DigitRule::mayBeLost, kRows);
      BadFieldCount badFields;
      const int middle = static_cast<int>(random() % kRows);
      const CsvValueRules rules(dialect, kColumns);
      ASSERT_FALSE(converter.convert(0, middle, rules, &badFields));
      ASSERT_FALSE(converter.convert(middle, kRows, rules, &badFields));
      const BatchColumn read = converter.column();
      long long expectedBad = 0;
      for (std::size_t row = 0; row < kRows; ++row) {
        const std::string& field = fields[row * kColumns + column];
        const bool isNull =
            field.empty() || (field == dialect.nullText && !areQuoted[row * kColumns + column]);
        double number = 0;
        const bool isNumber = !isNull && parseNumber(field, number) &&
                              !(keepsDigits && lostDigits(field, number) != LostDigits::none);
        expectedBad += isNumber || isNull ? 0 : 1;
        ASSERT_TRUE(hasSameBits(read.numbers()[row], isNumber ? number : kNullNumber)) << field;
      }
      ASSERT_EQ(badFields.count, expectedBad);
    }
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
