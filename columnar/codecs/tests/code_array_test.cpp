#include "columnar/codecs/code_array.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

using Codes = std::vector<std::uint32_t>;

std::vector<unsigned char> stored(const Codes& codes, CodeWidth width) {
  // Bytes that are not written show.
  std::vector<unsigned char> bytes(codesSize(codes.size(), width), 0xA5);
  const StoredCodes out(bytes.data(), codes.size(), width);
  for (std::size_t first = 0; first < codes.size(); first += kRowsInBatch) {
    const auto count = std::min(kRowsInBatch, codes.size() - first);
    out.store(first, std::span(codes).subspan(first, count));
  }
  return bytes;
}

Codes loaded(const std::vector<unsigned char>& bytes, std::size_t rows, CodeWidth width) {
  Codes codes;
  LoadedCodes(bytes.data(), rows, width).forEachBatch([&](std::size_t first, auto batch) {
    EXPECT_EQ(first, codes.size());
    codes.insert(codes.end(), batch.begin(), batch.end());
    return true;
  });
  return codes;
}

}  // namespace

TEST(CodeArray, EveryWidthKeepsEveryCodeWithoutReadingOrWritingFurther) {
  std::mt19937 random(1);
  for (int bits = 0; bits <= 33; ++bits) {
    const auto width = codeWidthOf(bits);
    ASSERT_EQ(width.has_value(), bits <= 24 || bits == 32) << bits;
    if (!width) {
      continue;
    }
    EXPECT_EQ(width->bits(), bits);
    const std::uint64_t limit = std::uint64_t{1} << bits;
    for (const std::size_t rows : {1, 7, 8, 9, 511, 512, 513, 1029}) {
      Codes codes(rows);
      for (std::uint32_t& code : codes) {
        code = static_cast<std::uint32_t>(random() % limit);
      }
      codes.back() = static_cast<std::uint32_t>(limit - 1);
      const auto bytes = stored(codes, *width);
      EXPECT_EQ(loaded(bytes, rows, *width), codes) << bits << " bits, " << rows << " rows";
    }
  }
}

TEST(CodeArray, TheNarrowestWidthThatHoldsACode) {
  const std::pair<std::uint64_t, int> widths[] = {
      {0, 0},      {1, 1},         {127, 7},        {128, 8},        {32767, 15},
      {32768, 16}, {0xFFFFFF, 24}, {0x1000000, 32}, {0xFFFFFFFF, 32}};
  for (const auto& [largest, bits] : widths) {
    EXPECT_EQ(codeWidthFor(largest)->bits(), bits) << largest;
  }
  EXPECT_FALSE(codeWidthFor(0x100000000).has_value());
}

TEST(CodeArray, LowPartsStandBeforeHighParts) {
  EXPECT_EQ(stored({0, 1, 2, 3}, *codeWidthOf(3)), (std::vector<unsigned char>{0x88, 0x06}));
  EXPECT_EQ(stored({1023, 512}, *codeWidthOf(10)), (std::vector<unsigned char>{0xFF, 0x00, 0x0B}));
  EXPECT_EQ(stored({0x12345}, *codeWidthOf(17)), (std::vector<unsigned char>{0x45, 0x23, 0x01}));
  EXPECT_EQ(stored({7}, *codeWidthOf(32)), (std::vector<unsigned char>{7, 0, 0, 0}));
}

}  // namespace kelvarin
