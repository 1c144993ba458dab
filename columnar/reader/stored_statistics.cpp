#include "columnar/reader/stored_statistics.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/null_number.h"

namespace kelvarin {

namespace {

KeyStatistics statisticsOfKeys(const ByteBuffer& values) {
  KeyStatistics statistics;
  for (std::size_t at = 0; at < values.size(); at += sizeof(std::uint32_t)) {
    const auto key = loadPacked<std::uint32_t>(values.data() + at);
    if (key >= kSmallestMissingKey) {
      statistics.hasNull = true;
      continue;
    }
    statistics.high = statistics.hasValues() ? std::max(statistics.high, key) : key;
    statistics.low = std::min(statistics.low, key);
  }
  return statistics;
}

NumberStatistics statisticsOfNumbers(const ByteBuffer& values) {
  NumberStatistics statistics;
  for (std::size_t at = 0; at < values.size(); at += sizeof(double)) {
    const auto number = loadPacked<double>(values.data() + at);
    if (isNullNumber(number)) {
      statistics.hasNull = true;
    } else if (std::isnan(number)) {
      statistics.hasNotANumber = true;
    } else {
      statistics.low = statistics.hasValues ? std::min(statistics.low, number) : number;
      statistics.high = statistics.hasValues ? std::max(statistics.high, number) : number;
      statistics.hasValues = true;
    }
  }
  return statistics;
}

// Most texts differ in their beginnings.
struct ComparedText {
  std::uint64_t beginning;
  std::string_view text;

  friend bool operator<(const ComparedText& left, const ComparedText& right) {
    return left.beginning != right.beginning ? left.beginning < right.beginning
                                             : left.text < right.text;
  }
};

TextStatistics statisticsOfTexts(const DecodedTexts& texts) {
  TextStatistics statistics;
  std::optional<ComparedText> low;
  std::optional<ComparedText> high;
  for (std::size_t row = 0; row < texts.offsets.size(); ++row) {
    const unsigned char* bytes = texts.text(row);
    if (isNullText(bytes)) {
      statistics.hasNull = true;
      continue;
    }
    const std::uint32_t length = lengthFromBytes(bytes);
    const ComparedText text{beginningOf(bytes + sizeof length, length), textFromBytes(bytes)};
    if (!low || text < *low) {
      low = text;
    }
    if (!high || *high < text) {
      high = text;
    }
  }
  if (low) {
    statistics.low = TextBound::of(low->text);
    statistics.high = TextBound::of(high->text);
  }
  return statistics;
}

template <typename Statistics>
bool isStored(const GelFile& file, const unsigned char* descriptor, std::size_t column,
              const Statistics& statistics) {
  Statistics stored;
  return file.descriptorLayout().readStatistics(descriptor, column, stored) && stored == statistics;
}

}  // namespace

bool matchesStatistics(const GelFile& file, const unsigned char* descriptor, std::size_t column,
                       const DecodedColumn& values) {
  switch (file.column(column).type) {
    case GelType::key:
      return isStored(file, descriptor, column, statisticsOfKeys(values.values));
    case GelType::number:
      return isStored(file, descriptor, column, statisticsOfNumbers(values.values));
    case GelType::text:
      break;
  }
  return isStored(file, descriptor, column, statisticsOfTexts(values.texts));
}

}  // namespace kelvarin
