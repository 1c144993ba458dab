#include "columnar/writer/block_statistics.h"

#include <algorithm>
#include <string_view>

#include "columnar/codecs/number_ranges.h"

namespace kelvarin {

namespace {

// Compares texts with the same beginning.
bool isBelow(std::string_view left, std::string_view right) {
  constexpr std::size_t kBeginningSize = sizeof(std::uint64_t);
  if (left.size() <= kBeginningSize || right.size() <= kBeginningSize) {
    return left.size() < right.size();
  }
  return left.substr(kBeginningSize) < right.substr(kBeginningSize);
}

}  // namespace

KeyStatistics statisticsOf(std::span<const std::uint32_t> keys) {
  std::uint32_t low = kNoKey;
  std::uint32_t high = 0;
  std::uint32_t nulls = 0;
  for (const std::uint32_t key : keys) {
    const bool isMissing = key >= kSmallestMissingKey;
    nulls += isMissing;
    low = std::min(low, isMissing ? kNoKey : key);
    high = std::max(high, isMissing ? 0 : key);
  }
  if (low == kNoKey) {
    return {.hasNull = nulls > 0, .low = kNoKey, .high = kNoKey};
  }
  return {.hasNull = nulls > 0, .low = low, .high = high};
}

NumberStatistics statisticsOf(std::span<const std::uint64_t> numbers) {
  const kernels::NumberRange range = kernels::rangeOf(numbers);
  return {.hasNull = range.hasMissing,
          .hasValues = range.hasValues,
          .hasNotANumber = range.hasNotANumber,
          .low = range.lowest,
          .high = range.highest};
}

TextStatistics statisticsOf(const TextValues& texts) {
  TextStatistics statistics;
  // The lowest and the highest text so far. Comparing the beginnings is enough for most texts.
  std::string_view low;
  std::string_view high;
  std::uint64_t lowBeginning = 0;
  std::uint64_t highBeginning = 0;
  bool hasValues = false;
  const unsigned char* next = texts.bytes.data();
  for (const std::uint32_t length : texts.lengths) {
    if (length == kNullLength) {
      statistics.hasNull = true;
      continue;
    }
    const std::string_view text(reinterpret_cast<const char*>(next), length);
    const std::uint64_t beginning = beginningOf(next, length);
    next += length;
    if (!hasValues || beginning < lowBeginning ||
        (beginning == lowBeginning && isBelow(text, low))) {
      low = text;
      lowBeginning = beginning;
    }
    if (!hasValues || beginning > highBeginning ||
        (beginning == highBeginning && isBelow(high, text))) {
      high = text;
      highBeginning = beginning;
    }
    hasValues = true;
  }
  if (hasValues) {
    statistics.low = TextBound::of(low);
    statistics.high = TextBound::of(high);
  }
  return statistics;
}

TextStatistics statisticsOf(std::span<const TextDictionary::Entry> texts) {
  TextStatistics statistics;
  statistics.hasNull = texts.front().length == kNullLength;
  if (texts.back().length != kNullLength) {
    const auto boundOf = [](const TextDictionary::Entry& text) {
      return TextBound::of({reinterpret_cast<const char*>(text.bytes), text.length});
    };
    statistics.low = boundOf(texts[statistics.hasNull ? 1 : 0]);
    statistics.high = boundOf(texts.back());
  }
  return statistics;
}

}  // namespace kelvarin
