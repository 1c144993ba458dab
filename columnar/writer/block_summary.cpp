#include "columnar/writer/block_summary.h"

#include <algorithm>
#include <string_view>

#include "columnar/codecs/number_ranges.h"

namespace kelvarin {

namespace {

// Texts with the same beginning.
bool isBelow(std::string_view left, std::string_view right) {
  constexpr std::size_t kBeginningSize = sizeof(std::uint64_t);
  if (left.size() <= kBeginningSize || right.size() <= kBeginningSize) {
    return left.size() < right.size();
  }
  return left.substr(kBeginningSize) < right.substr(kBeginningSize);
}

}  // namespace

KeySummary summaryOf(std::span<const std::uint32_t> keys) {
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

NumberSummary summaryOf(std::span<const std::uint64_t> numbers) {
  const kernels::NumberRange range = kernels::rangeOf(numbers);
  return {.hasNull = range.hasMissing,
          .hasValues = range.hasValues,
          .hasNotANumber = range.hasNotANumber,
          .low = range.lowest,
          .high = range.highest};
}

TextSummary summaryOf(const TextValues& texts) {
  TextSummary summary;
  // The lowest and the highest text so far; most others are told apart from them by their
  // beginnings.
  std::string_view low;
  std::string_view high;
  std::uint64_t lowBeginning = 0;
  std::uint64_t highBeginning = 0;
  bool hasValues = false;
  const unsigned char* next = texts.bytes.data();
  for (const std::uint32_t length : texts.lengths) {
    if (length == kNullLength) {
      summary.hasNull = true;
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
    summary.low = TextBound::of(low);
    summary.high = TextBound::of(high);
  }
  return summary;
}

TextSummary summaryOf(std::span<const TextDictionary::Entry> texts) {
  TextSummary summary;
  summary.hasNull = texts.front().length == kNullLength;
  if (texts.back().length != kNullLength) {
    const auto boundOf = [](const TextDictionary::Entry& text) {
      return TextBound::of({reinterpret_cast<const char*>(text.bytes), text.length});
    };
    summary.low = boundOf(texts[summary.hasNull ? 1 : 0]);
    summary.high = boundOf(texts.back());
  }
  return summary;
}

}  // namespace kelvarin
