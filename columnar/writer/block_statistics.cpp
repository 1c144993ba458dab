#include "columnar/writer/block_statistics.h"

#include <algorithm>
#include <string_view>

#include "columnar/codecs/number_ranges.h"

namespace kelvarin {

namespace {

__extension__ using Beginning = unsigned __int128;

constexpr std::size_t kBeginningSize = sizeof(Beginning);

// From the index 16 - n on, the first n of 16 bytes are ones.
constexpr unsigned char kOnesAndZeros[2 * kBeginningSize] = {
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

// The first 16 bytes of a text, padded with zeros, as a number: numbers compare as the texts do,
// unless they are the same. `end` is that of the memory that may be read.
Beginning beginningOf(const unsigned char* bytes, std::size_t size, const unsigned char* end) {
  unsigned char copy[kBeginningSize] = {};
  if (static_cast<std::size_t>(end - bytes) < kBeginningSize) [[unlikely]] {
    std::copy_n(bytes, std::min(size, kBeginningSize), copy);
    bytes = copy;
  }
  const unsigned char* mask = kOnesAndZeros + kBeginningSize - std::min(size, kBeginningSize);
  const auto part = [&](std::size_t offset) {
    return __builtin_bswap64(loadPacked<std::uint64_t>(bytes + offset) &
                             loadPacked<std::uint64_t>(mask + offset));
  };
  return static_cast<Beginning>(part(0)) << 64 | part(sizeof(std::uint64_t));
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
  Beginning lowBeginning = ~Beginning{0};
  Beginning highBeginning = 0;
  bool hasValues = false;
  const unsigned char* next = texts.bytes.data();
  const unsigned char* end = next + texts.bytes.size();
  for (const std::uint32_t length : texts.lengths) {
    if (length == kNullLength) {
      statistics.hasNull = true;
      continue;
    }
    const std::string_view text(reinterpret_cast<const char*>(next), length);
    const Beginning beginning = beginningOf(next, length, end);
    next += length;
    if (beginning <= lowBeginning && (!hasValues || text < low)) {
      low = text;
      lowBeginning = beginning;
    }
    if (beginning >= highBeginning && (!hasValues || high < text)) {
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
