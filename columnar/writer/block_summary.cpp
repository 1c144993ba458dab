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
  std::string_view low;
  std::string_view high;
  bool hasValues = false;
  const char* next = reinterpret_cast<const char*>(texts.bytes.data());
  for (const std::uint32_t length : texts.lengths) {
    if (length == kNullLength) {
      summary.hasNull = true;
      continue;
    }
    const std::string_view text(next, length);
    next += length;
    if (!hasValues) {
      low = high = text;
      hasValues = true;
    } else if (text < low) {
      low = text;
    } else if (text > high) {
      high = text;
    }
  }
  if (hasValues) {
    summary.low = TextBound::of(low);
    summary.high = TextBound::of(high);
  }
  return summary;
}

}  // namespace kelvarin
