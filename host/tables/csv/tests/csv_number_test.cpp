#include "host/tables/csv/csv_number.h"

#include <bit>
#include <random>
#include <regex>

#include <gtest/gtest.h>

namespace kelvarin {

// The short way gives the standard library's bits, and takes every plain number of eight bytes.
TEST(CsvNumber, shortDecimalsAreExact) {
  constexpr std::string_view kBytes = "00112233445566778899..--+e ,/:\xFF";
  const std::regex plain("-?([0-9]+\\.?[0-9]*|\\.[0-9]+)");
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
    const bool isPlain = size <= 8 && std::regex_match(field.begin(), field.end(), plain);
    ASSERT_EQ(isTaken, isPlain) << field;
  }
}

}  // namespace kelvarin
