#include "columnar/codecs/number_kernels.h"

#include <algorithm>
#include <bit>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "base/byte_cursor.h"
#include "base/null_number.h"

namespace kelvarin {

TEST(NumberKernels, DeltasAddUpWhereverTheyStandAndHoweverLargeTheSumGets) {
  std::mt19937_64 random(3);
  constexpr std::uint32_t kMissing = 0xFFFFFFFF;
  const std::int64_t bases[] = {0, -5, (1ll << 50) - 1, 1 - (1ll << 50)};
  for (const std::size_t rows : {1, 3, 4, 5, 511, 513, 3000}) {
    // Codes of 32 bits take the sum beyond 2^51 within 3000 rows.
    for (const int bits : {3, 32}) {
      std::vector<std::uint32_t> codes(rows);
      for (std::uint32_t& code : codes) {
        const auto any = static_cast<std::uint32_t>(random());
        code = any % 7 == 0 ? kMissing : bits == 32 ? any | 1u << 31 : any % 8;
        code &= random() % 10 == 0 ? kMissing : ~1u;  // most deltas are not negative
      }
      std::vector<unsigned char> stored(rows * sizeof(std::uint32_t));
      StoredCodes out(stored.data(), rows, *codeWidthOf(32));
      for (std::size_t first = 0; first < rows; first += kRowsInBatch) {
        out.store(first, std::span(codes).subspan(first, std::min(kRowsInBatch, rows - first)));
      }
      for (const std::int64_t base : bases) {
        for (const int exponent : {0, 2}) {
          std::vector<unsigned char> numbers(rows * sizeof(double));
          kernels::unscaleDeltas(LoadedCodes(stored.data(), rows, *codeWidthOf(32)),
                                 {.missing = kMissing, .base = base, .exponent = exponent},
                                 numbers.data());
          std::int64_t sum = base;
          for (std::size_t row = 0; row < rows; ++row) {
            sum += codes[row] == kMissing ? 0 : kernels::zigzagDecoded(codes[row]);
            const double number = static_cast<double>(sum) / kernels::powerOfTen(exponent);
            const auto expected =
                codes[row] == kMissing ? kNullNumberBits : std::bit_cast<std::uint64_t>(number);
            ASSERT_EQ(loadPacked<std::uint64_t>(numbers.data() + row * sizeof(double)), expected)
                << "row " << row << " of " << rows << ", base " << base;
          }
        }
      }
    }
  }
}

}  // namespace kelvarin
