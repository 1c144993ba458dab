#include "columnar/writer/block_summary.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "base/null_number.h"

namespace kelvarin {

namespace {

// Doubles in their order as integers: negative ones have their other bits turned round.
constexpr std::uint64_t kSignBit = 1ull << 63;
constexpr std::int64_t kInfinityBits = 0x7FF0000000000000ll;

constexpr std::int64_t orderedBits(std::uint64_t bits) {
  const auto value = static_cast<std::int64_t>(bits);
  return value ^ static_cast<std::int64_t>(static_cast<std::uint64_t>(value >> 63) >> 1);
}

// Texts with the same beginning.
bool isBelow(std::string_view left, std::string_view right) {
  constexpr std::size_t kBeginningSize = sizeof(std::uint64_t);
  if (left.size() <= kBeginningSize || right.size() <= kBeginningSize) {
    return left.size() < right.size();
  }
  return left.substr(kBeginningSize) < right.substr(kBeginningSize);
}

constexpr double fromOrderedBits(std::int64_t ordered) {
  return std::bit_cast<double>(orderedBits(static_cast<std::uint64_t>(ordered)));
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
  std::int64_t low = INT64_MAX;
  std::int64_t high = INT64_MIN;
  std::uint64_t nulls = 0;
  std::uint64_t notNumbers = 0;
  for (const std::uint64_t bits : numbers) {
    const bool isNotANumber = static_cast<std::int64_t>(bits & ~kSignBit) > kInfinityBits;
    const std::int64_t ordered = orderedBits(bits);
    low = std::min(low, isNotANumber ? INT64_MAX : ordered);
    high = std::max(high, isNotANumber ? INT64_MIN : ordered);
    nulls += bits == kNullNumberBits;
    notNumbers += isNotANumber;
  }
  NumberSummary summary;
  summary.hasNull = nulls > 0;
  summary.hasValues = notNumbers < numbers.size();
  summary.hasNotANumber = notNumbers > nulls;
  if (summary.hasValues) {
    summary.low = fromOrderedBits(low);
    summary.high = fromOrderedBits(high);
  }
  return summary;
}

TextSummary summaryOf(const TextValues& texts) {
  TextSummary summary;
  // The lowest and the highest text so far; most others are told apart from them by their beginnings.
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

}  // namespace kelvarin
