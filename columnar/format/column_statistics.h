// The statistics of one column in one block: whether values are missing, the smallest and the
// largest value.
//
// A column without values has no bounds. Readers skip blocks by them.
// Layout: docs/gel-format.md, "Column statistics".
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

struct KeyStatistics {
  bool hasNull = false;
  std::uint32_t low = kNoKey;
  std::uint32_t high = kNoKey;

  bool hasValues() const { return low != kNoKey; }
  friend bool operator==(const KeyStatistics&, const KeyStatistics&) = default;
};

struct NumberStatistics {
  bool hasNull = false;
  bool hasValues = false;  // numbers other than missing ones and NaN
  bool hasNotANumber = false;
  double low = 0.0;
  double high = 0.0;

  friend bool operator==(const NumberStatistics&, const NumberStatistics&) = default;
};

// The smallest or the largest text of a column, or the beginning of it.
struct TextBound {
  std::string text;    // UTF-8, at most kMaxSize bytes
  bool isCut = false;  // the text goes on

  static constexpr std::size_t kMaxSize = 80;
  // Cuts before a character that does not fit whole.
  static TextBound of(std::string_view text);
  friend bool operator==(const TextBound&, const TextBound&) = default;
};

struct TextStatistics {
  bool hasNull = false;
  std::optional<TextBound> low;
  std::optional<TextBound> high;

  // No text of the column is smaller: a cut text is smaller than the whole one.
  std::optional<std::string> lowerBound() const;
  // No text of the column is larger: a cut text is rounded up at its last character. Nothing when
  // that cannot be, or when there is no value.
  std::optional<std::string> upperBound() const;
  friend bool operator==(const TextStatistics&, const TextStatistics&) = default;
};

// The bytes that the statistics take after their null flag.
inline constexpr std::size_t kKeyStatisticsSize = 8;
inline constexpr std::size_t kNumberStatisticsSize = 17;
inline constexpr std::size_t kTextStatisticsSize = 164;

// The null flag and the statistics, as they stand in a descriptor. Loading returns false for bytes
// that hold no statistics.
void storeStatistics(unsigned char* bytes, const KeyStatistics& statistics);
void storeStatistics(unsigned char* bytes, const NumberStatistics& statistics);
void storeStatistics(unsigned char* bytes, const TextStatistics& statistics);
[[nodiscard]] bool loadStatistics(const unsigned char* bytes, KeyStatistics& statistics);
[[nodiscard]] bool loadStatistics(const unsigned char* bytes, NumberStatistics& statistics);
[[nodiscard]] bool loadStatistics(const unsigned char* bytes, TextStatistics& statistics);

}  // namespace kelvarin
