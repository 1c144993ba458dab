#include "columnar/reader/stored_summary.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/null_number.h"

namespace kelvarin {

namespace {

KeySummary summaryOfKeys(const ByteBuffer& values) {
  KeySummary summary;
  for (std::size_t at = 0; at < values.size(); at += sizeof(std::uint32_t)) {
    const auto key = loadPacked<std::uint32_t>(values.data() + at);
    if (key >= kSmallestMissingKey) {
      summary.hasNull = true;
      continue;
    }
    summary.high = summary.hasValues() ? std::max(summary.high, key) : key;
    summary.low = std::min(summary.low, key);
  }
  return summary;
}

NumberSummary summaryOfNumbers(const ByteBuffer& values) {
  NumberSummary summary;
  for (std::size_t at = 0; at < values.size(); at += sizeof(double)) {
    const auto number = loadPacked<double>(values.data() + at);
    if (isNullNumber(number)) {
      summary.hasNull = true;
    } else if (std::isnan(number)) {
      summary.hasNotANumber = true;
    } else {
      summary.low = summary.hasValues ? std::min(summary.low, number) : number;
      summary.high = summary.hasValues ? std::max(summary.high, number) : number;
      summary.hasValues = true;
    }
  }
  return summary;
}

TextSummary summaryOfTexts(const DecodedTexts& texts) {
  TextSummary summary;
  std::optional<std::string_view> low;
  std::optional<std::string_view> high;
  for (std::size_t row = 0; row < texts.offsets.size(); ++row) {
    const unsigned char* bytes = texts.text(row);
    if (isNullText(bytes)) {
      summary.hasNull = true;
      continue;
    }
    const std::string_view text = textFromBytes(bytes);
    low = low ? std::min(*low, text) : text;
    high = high ? std::max(*high, text) : text;
  }
  if (low) {
    summary.low = TextBound::of(*low);
    summary.high = TextBound::of(*high);
  }
  return summary;
}

template <typename Summary>
bool isStored(const GelFile& file, const BlockInfo& block, std::size_t column,
              const Summary& summary) {
  Summary stored;
  return file.descriptorLayout().readSummary(block.descriptor, column, stored) && stored == summary;
}

}  // namespace

bool hasItsSummary(const GelFile& file, const BlockInfo& block, std::size_t column,
                   const DecodedColumn& values) {
  switch (file.column(column).type) {
    case GelType::key:
      return isStored(file, block, column, summaryOfKeys(values.values));
    case GelType::number:
      return isStored(file, block, column, summaryOfNumbers(values.values));
    case GelType::text:
      break;
  }
  return isStored(file, block, column, summaryOfTexts(values.texts));
}

}  // namespace kelvarin
