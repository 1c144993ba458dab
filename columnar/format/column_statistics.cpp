#include "columnar/format/column_statistics.h"

#include <algorithm>
#include <bit>

namespace kelvarin {

namespace {

enum class BoundState : std::uint8_t { none = 0, whole = 1, cut = 2 };

// State, length, and the text padded with zeros.
constexpr std::size_t kBoundSize = 2 + TextBound::kMaxSize;
static_assert(2 * kBoundSize == kTextStatisticsSize);

constexpr std::uint8_t kHasValues = 1;
constexpr std::uint8_t kHasNotANumber = 2;

constexpr char32_t kLastCharacter = 0x10FFFF;
constexpr char32_t kBeforeSurrogates = 0xD7FF;
constexpr char32_t kAfterSurrogates = 0xE000;

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t startOfLastCharacter(std::string_view text) {
  std::size_t start = text.size() - 1;
  while (start > 0 && isContinuation(text[start])) {
    --start;
  }
  return start;
}

// The code point of the UTF-8 sequence that fills `bytes`; nothing when it is none, as where it
// could be shorter.
std::optional<char32_t> codePoint(std::string_view bytes) {
  constexpr unsigned char kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr unsigned char kLead[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
  const auto lead = static_cast<unsigned char>(bytes[0]);
  const std::size_t size = bytes.size();
  if (size > 4 || (lead & ~kLeadMask[size] & 0xFF) != kLead[size]) {
    return std::nullopt;
  }
  char32_t point = lead & kLeadMask[size];
  for (const char byte : bytes.substr(1)) {
    point = point << 6 | (static_cast<unsigned char>(byte) & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = point > kBeforeSurrogates && point < kAfterSurrogates;
  const bool isCharacter = point >= kSmallest[size] && point <= kLastCharacter && !isSurrogate;
  return isCharacter ? std::optional(point) : std::nullopt;
}

void appendUtf8(std::string& text, char32_t point) {
  const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (point < 0x80) {
    put(point);
    return;
  }
  const int continuations = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  constexpr char32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
  put(kLead[continuations] | point >> (6 * continuations));
  for (int i = continuations - 1; i >= 0; --i) {
    put(0x80 | (point >> (6 * i) & 0x3F));
  }
}

// The shortest text above every text that begins with `prefix`: its last character that has a
// successor is replaced by that, and what follows is dropped.
std::optional<std::string> roundedUp(std::string_view prefix) {
  while (!prefix.empty()) {
    const std::size_t start = startOfLastCharacter(prefix);
    const auto point = codePoint(prefix.substr(start));
    prefix = prefix.substr(0, start);
    if (point && *point < kLastCharacter) {
      std::string text(prefix);
      appendUtf8(text, *point == kBeforeSurrogates ? kAfterSurrogates : *point + 1);
      return text;
    }
  }
  return std::nullopt;
}

void storeBound(unsigned char* bytes, const std::optional<TextBound>& bound) {
  std::fill_n(bytes, kBoundSize, static_cast<unsigned char>(0));
  if (!bound) {
    return;
  }
  bytes[0] = static_cast<unsigned char>(bound->isCut ? BoundState::cut : BoundState::whole);
  bytes[1] = static_cast<unsigned char>(bound->text.size());
  std::copy(bound->text.begin(), bound->text.end(), bytes + 2);
}

bool loadBound(const unsigned char* bytes, std::optional<TextBound>& bound) {
  bound.reset();
  const std::size_t size = bytes[1];
  switch (static_cast<BoundState>(bytes[0])) {
    case BoundState::none:
      return size == 0;
    case BoundState::whole:
    case BoundState::cut:
      break;
    default:
      return false;
  }
  if (size > TextBound::kMaxSize ||
      std::any_of(bytes + 2 + size, bytes + kBoundSize, [](auto byte) { return byte != 0; })) {
    return false;
  }
  const auto* text = reinterpret_cast<const char*>(bytes + 2);
  bound = TextBound{std::string(text, size), static_cast<BoundState>(bytes[0]) == BoundState::cut};
  return true;
}

bool loadFlag(unsigned char byte, bool& flag) {
  flag = byte != 0;
  return byte <= 1;
}

}  // namespace

TextBound TextBound::of(std::string_view text) {
  if (text.size() <= kMaxSize) {
    return {std::string(text), false};
  }
  std::size_t end = kMaxSize;
  while (end > 0 && isContinuation(text[end])) {
    --end;
  }
  // Bytes that are no UTF-8 have no characters to respect.
  return {std::string(text.substr(0, end + 4 > kMaxSize ? end : kMaxSize)), true};
}

std::optional<std::string> TextStatistics::lowerBound() const {
  return low ? std::optional(low->text) : std::nullopt;
}

std::optional<std::string> TextStatistics::upperBound() const {
  if (!high) {
    return std::nullopt;
  }
  return high->isCut ? roundedUp(high->text) : std::optional(high->text);
}

void storeStatistics(unsigned char* bytes, const KeyStatistics& statistics) {
  bytes[0] = statistics.hasNull;
  storePacked(bytes + 1, statistics.low);
  storePacked(bytes + 5, statistics.high);
}

void storeStatistics(unsigned char* bytes, const NumberStatistics& statistics) {
  bytes[0] = statistics.hasNull;
  bytes[1] = static_cast<unsigned char>((statistics.hasValues ? kHasValues : 0) |
                                        (statistics.hasNotANumber ? kHasNotANumber : 0));
  storePacked(bytes + 2, statistics.low);
  storePacked(bytes + 10, statistics.high);
}

void storeStatistics(unsigned char* bytes, const TextStatistics& statistics) {
  bytes[0] = statistics.hasNull;
  storeBound(bytes + 1, statistics.low);
  storeBound(bytes + 1 + kBoundSize, statistics.high);
}

bool loadStatistics(const unsigned char* bytes, KeyStatistics& statistics) {
  statistics.low = loadPacked<std::uint32_t>(bytes + 1);
  statistics.high = loadPacked<std::uint32_t>(bytes + 5);
  const bool isRange = statistics.low <= statistics.high && statistics.high < kSmallestMissingKey;
  const bool isNone = statistics.low == kNoKey && statistics.high == kNoKey;
  return loadFlag(bytes[0], statistics.hasNull) && (isRange || (isNone && statistics.hasNull));
}

bool loadStatistics(const unsigned char* bytes, NumberStatistics& statistics) {
  statistics.hasValues = (bytes[1] & kHasValues) != 0;
  statistics.hasNotANumber = (bytes[1] & kHasNotANumber) != 0;
  statistics.low = loadPacked<double>(bytes + 2);
  statistics.high = loadPacked<double>(bytes + 10);
  const bool isRange = statistics.hasValues ? statistics.low <= statistics.high
                                            : statistics.low == 0.0 && statistics.high == 0.0;
  return loadFlag(bytes[0], statistics.hasNull) && bytes[1] <= (kHasValues | kHasNotANumber) &&
         isRange;
}

bool loadStatistics(const unsigned char* bytes, TextStatistics& statistics) {
  return loadFlag(bytes[0], statistics.hasNull) && loadBound(bytes + 1, statistics.low) &&
         loadBound(bytes + 1 + kBoundSize, statistics.high) &&
         statistics.low.has_value() == statistics.high.has_value();
}

}  // namespace kelvarin
