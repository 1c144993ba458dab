#include "columnar/writer/block_statistics.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace kelvarin {

// Texts with much in common, so that the first bytes of many are those of the lowest one, with
// zeros, which also fill up shorter texts.
TEST(BlockStatistics, TheLowestAndTheHighestText) {
  std::mt19937 random(7);
  const std::string letters("\0a\xFF", 3);
  for (int block = 0; block < 2000; ++block) {
    const std::size_t shared = random() % 24;
    std::vector<std::string> values;
    std::vector<std::uint32_t> lengths;
    std::string all;
    bool hasNull = false;
    for (unsigned left = 1 + random() % 12; left > 0; --left) {
      if (random() % 8 == 0) {
        lengths.push_back(kNullLength);
        hasNull = true;
        continue;
      }
      std::string text(random() % 3 == 0 ? random() % (shared + 1) : shared, 'a');
      for (unsigned size = random() % 4; size > 0; --size) {
        text += letters[random() % letters.size()];
      }
      lengths.push_back(static_cast<std::uint32_t>(text.size()));
      all += text;
      values.push_back(text);
    }
    // A copy, so that a sanitizer sees what reads beyond.
    const std::vector<unsigned char> bytes(all.begin(), all.end());
    const TextStatistics statistics = statisticsOf(TextValues{lengths, bytes});
    EXPECT_EQ(statistics.hasNull, hasNull);
    EXPECT_EQ(statistics.low.has_value(), !values.empty());
    if (!values.empty()) {
      EXPECT_EQ(statistics.low->text, *std::min_element(values.begin(), values.end()));
      EXPECT_EQ(statistics.high->text, *std::max_element(values.begin(), values.end()));
    }
  }
}

}  // namespace kelvarin
