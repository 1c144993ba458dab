// A date format whose fields are digits at fixed positions, such as yyyy-MM-dd hh:mm:ss.
//
// Reads and prints eight characters at a time. Used by DateReader and DatePrinter for the formats
// that are so.
// Threads: read-only after of().
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "expression/dates/clock_fields.h"
#include "expression/dates/date_format_parts.h"

namespace kelvarin {

class FixedDateLayout {
 public:
  static constexpr std::size_t kMaxSize = 32;

  // Of the parts up to a zone at the end. Nothing for a field of varying width or one that comes
  // twice, and for texts of fewer than 8 characters or of more than kMaxSize.
  static std::optional<FixedDateLayout> of(const DateFormatParts& format);

  std::size_t size() const { return m_size; }
  // Of the first size() characters, which are there; false where they have another form.
  bool read(const char* text, ClockFields& fields) const {
    for (std::size_t i = 0; i < m_wordCount; ++i) {
      if (!m_words[i].isMatchedBy(text)) {
        return false;
      }
    }
    if (m_year != kAbsent) {
      fields.year = twoDigits(text + m_year) * 100 + twoDigits(text + m_year + 2);
    }
    if (m_yearOfCentury != kAbsent) {
      fields.year += twoDigits(text + m_yearOfCentury);
    }
    readTwo(text, m_month, fields.month);
    readTwo(text, m_day, fields.day);
    readTwo(text, m_hour, fields.hour);
    readTwo(text, m_minute, fields.minute);
    readTwo(text, m_second, fields.second);
    if (m_millisecond != kAbsent) {
      fields.millisecond = (text[m_millisecond] - '0') * 100 + twoDigits(text + m_millisecond + 1);
    }
    return true;
  }
  // Writes kMaxSize characters, of which the first size() count. For the years 1 to 9999;
  // `timeOfDay` is in milliseconds.
  void print(const CivilDay& day, std::int64_t timeOfDay, char* text) const;

 private:
  using Position = std::uint8_t;
  static constexpr Position kAbsent = 0xFF;

  // Eight characters: digits, or what stands there in every text.
  struct Word {
    std::uint8_t offset = 0;
    std::uint64_t expected = 0;  // 0 where a digit is
    std::uint64_t toOverflow = 0;

    // Digits differ from the character 0 by at most 9, fixed text from itself by nothing.
    bool isMatchedBy(const char* text) const {
      constexpr std::uint64_t highBits = 0x8080808080808080;
      std::uint64_t characters = 0;
      std::memcpy(&characters, text + offset, sizeof characters);
      const std::uint64_t difference = characters ^ expected;
      return ((((difference & ~highBits) + toOverflow) | difference) & highBits) == 0;
    }
  };

  static int twoDigits(const char* text) { return (text[0] - '0') * 10 + (text[1] - '0'); }
  static void readTwo(const char* text, Position position, int& number) {
    if (position != kAbsent) {
      number = twoDigits(text + position);
    }
  }
  static void put(char* text, Position position, int number);
  bool add(const DateFormatPart& part, std::string_view literal);
  Position* positionOf(const DateFormatPart& part);
  void addWord(std::size_t offset);
  void printTime(std::int64_t timeOfDay, char* text) const;

  std::array<Word, 4> m_words;
  std::size_t m_wordCount = 0;
  std::size_t m_size = 0;
  Position m_year = kAbsent;
  Position m_yearOfCentury = kAbsent;
  Position m_month = kAbsent;
  Position m_day = kAbsent;
  Position m_hour = kAbsent;
  Position m_minute = kAbsent;
  Position m_second = kAbsent;
  Position m_millisecond = kAbsent;
  bool m_hasTime = false;
  std::array<char, kMaxSize> m_text{};  // fixed text, and 0 for digits
  std::array<bool, kMaxSize> m_isDigit{};
};

}  // namespace kelvarin
