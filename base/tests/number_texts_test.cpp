#include "base/number_texts.h"

#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/null_number.h"
#include "base/shortest_number.h"

namespace kelvarin {

namespace {

std::string expectedText(double number) {
  char text[kLongestNumberText];
  return isNullNumber(number) ? "" : std::string(text, appendShortest(text, number));
}

void expectTexts(const std::vector<double>& numbers) {
  NumberText texts[kNumbersPrinted];
  printNumbers(numbers.data(), numbers.size(), texts);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    ASSERT_EQ(std::string(texts[i].text()), expectedText(numbers[i]));
  }
}

}  // namespace

TEST(NumberTexts, boundsOfWhatIsPrintedTogether) {
  expectTexts({kNullNumber, kNotANumber, kInfinity, -kInfinity, 5e-324, -1.5e300});
  for (const double bound :
       {0.0, 1e-6, 1e-4, 0.5, 1.0, 9.5, 10.0, 1e8, 1e9, 0x1p51, 0x1p53, 1e16}) {
    const double below = std::nextafter(bound, 0);
    const double above = std::nextafter(bound, 1e300);
    expectTexts({bound, below, above, -bound, -below, -above});
  }
  expectTexts({99999999.999999, -99999999.999999, 99999999.5, 100000000.5, 0.000001, 0.0000015});
  expectTexts({});
}

// Columns of few and of many decimals, mixed with other numbers or not.
TEST(NumberTexts, eachNumberOfAColumnIsPrintedAsItIsAlone) {
  std::mt19937_64 random(37);
  for (int column = 0; column < 20000; ++column) {
    const double power = std::pow(10, static_cast<double>(random() % 9));
    const auto digits = static_cast<int>(random() % 40) + 24;  // bits that are not used
    const bool isMixed = random() % 2 == 0;
    std::vector<double> numbers(1 + random() % kNumbersPrinted);
    for (double& number : numbers) {
      number = static_cast<double>(random() >> digits) / power * (random() % 2 == 0 ? 1 : -1);
      if (isMixed && random() % 4 == 0) {
        number = random() % 2 == 0 ? std::nextafter(number, 0) : std::bit_cast<double>(random());
      }
    }
    expectTexts(numbers);
  }
}

}  // namespace kelvarin
