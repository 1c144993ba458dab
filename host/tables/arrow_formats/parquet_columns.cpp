#include "host/tables/arrow_formats/parquet_columns.h"

#include <algorithm>
#include <bit>

#include "host/tables/arrow_formats/run_lengths.h"

namespace kelvarin {

int bitsOfCodes(std::size_t dictionarySize) {
  return std::max(1, static_cast<int>(std::bit_width(dictionarySize - 1)));
}

void appendCodes(const std::uint32_t* codes, std::size_t rowCount, int bits,
                 const ValueRange& range, ColumnPages& pages) {
  std::uint8_t* target = pages.valuesOfPage(1 + maxRunLengthsSize(rowCount, bits));
  *target = static_cast<std::uint8_t>(bits);
  const auto missing = static_cast<std::size_t>(std::count(codes, codes + rowCount, kNoCode));
  std::uint8_t* end = target + 1;
  if (missing == 0) {
    end = putRunLengths(end, codes, rowCount, bits);
  } else {
    std::vector<std::uint32_t>& presence = pages.presence();
    presence.resize(rowCount);
    std::vector<std::uint32_t> present;
    present.reserve(rowCount - missing);
    for (std::size_t row = 0; row < rowCount; ++row) {
      presence[row] = codes[row] == kNoCode ? 0 : 1;
      if (codes[row] != kNoCode) {
        present.push_back(codes[row]);
      }
    }
    end = putRunLengths(end, present.data(), present.size(), bits);
  }
  pages.appendPage(rowCount, missing, static_cast<std::size_t>(end - target), range);
}

}  // namespace kelvarin
