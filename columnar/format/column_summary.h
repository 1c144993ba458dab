// What a block descriptor tells about one column's values: whether some are missing, the smallest
// and the largest.
//
// A column without values has neither. Layout: docs/gel-format.md, "Summaries". Threads: plain
// values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/byte_cursor.h"

namespace kelvarin {

inline constexpr std::uint32_t kNoKey = 0xFFFFFFFF;
// Both of these keys count as missing.
inline constexpr std::uint32_t kSmallestMissingKey = 0xFFFFFFFE;

struct KeySummary {
  bool hasNull = false;
  std::uint32_t low = kNoKey;
  std::uint32_t high = kNoKey;

  bool hasValues() const { return low != kNoKey; }
  friend bool operator==(const KeySummary&, const KeySummary&) = default;
};

struct NumberSummary {
  bool hasNull = false;
  bool hasValues = false;  // numbers other than missing ones and NaN
  bool hasNotANumber = false;
  double low = 0.0;
  double high = 0.0;

  friend bool operator==(const NumberSummary&, const NumberSummary&) = default;
};

// The smallest or the largest text of a column, or the beginning of it.
struct TextBound {
  std::string text;    // UTF-8, at most kMaximumSize bytes
  bool isCut = false;  // the text goes on

  static constexpr std::size_t kMaximumSize = 80;
  // Cuts before a character that does not fit whole.
  static TextBound of(std::string_view text);
  friend bool operator==(const TextBound&, const TextBound&) = default;
};

struct TextSummary {
  bool hasNull = false;
  std::optional<TextBound> low;
  std::optional<TextBound> high;

  // No text of the column is smaller; a cut text is smaller than the text it was cut from.
  std::optional<std::string> lowerBound() const;
  // No text of the column is larger: a cut text is rounded up at its last character. Nothing when
  // that cannot be, or when there is no value.
  std::optional<std::string> upperBound() const;
  friend bool operator==(const TextSummary&, const TextSummary&) = default;
};

// The bytes that a summary takes after its null flag.
inline constexpr std::size_t kKeySummarySize = 8;
inline constexpr std::size_t kNumberSummarySize = 17;
inline constexpr std::size_t kTextSummarySize = 164;

// The null flag and the summary, as they stand in a descriptor. Reading answers false for bytes
// that cannot be a summary.
void storeSummary(unsigned char* bytes, const KeySummary& summary);
void storeSummary(unsigned char* bytes, const NumberSummary& summary);
void storeSummary(unsigned char* bytes, const TextSummary& summary);
[[nodiscard]] bool loadSummary(const unsigned char* bytes, KeySummary& summary);
[[nodiscard]] bool loadSummary(const unsigned char* bytes, NumberSummary& summary);
[[nodiscard]] bool loadSummary(const unsigned char* bytes, TextSummary& summary);

}  // namespace kelvarin
