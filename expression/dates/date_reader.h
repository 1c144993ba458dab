// Reads dates in one format, by a compiled form of it.
//
// A text that the compiled form takes means what QDateTime takes it for; where it is not sure about
// a text, QDateTime decides. Of seconds with more than three decimals the milliseconds count, in
// formats in which every field has its fixed width.
// Used by DateTextFormat. Threads: read-only after of().
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include <QString>

#include "expression/dates/clock_reading.h"
#include "expression/dates/date_format_parts.h"
#include "expression/dates/date_names.h"
#include "expression/dates/fixed_date_layout.h"

namespace kelvarin {

enum class Legibility { date, noDate, unknown };

class DateReader {
 public:
  // Nothing for a format that cannot be compiled: that has a field twice, a number of varying width
  // before another digit, a weekday without a whole date, or a zone that is not at its end.
  // `isOfLocale`: names are those of the system's locale, else English.
  static std::optional<DateReader> of(const QString& format, bool isOfLocale);

  struct Reading {
    Legibility legibility = Legibility::unknown;
    ClockReading clock;
    std::string_view zone;  // the end of the text, in a format with a zone
  };
  Reading read(std::string_view text) const;
  // Of a date in a format without a zone whose fields are at fixed positions; nothing for others.
  std::optional<ClockReading> readFixed(std::string_view text) const {
    ClockFields fields;
    const bool isRead = m_layout && !m_hasZone && text.size() == m_layout->size() &&
                        m_layout->read(text.data(), fields);
    return isRead ? readingOf(fields) : std::nullopt;
  }

 private:
  struct Values;

  DateReader(DateFormatParts format, bool isOfLocale);
  // The index of the part at which it failed, or their count.
  std::size_t readParts(std::string_view text, Values& values, std::size_t& position) const;
  bool skipFinerDigits(std::string_view text, std::size_t& position) const;
  static std::optional<ClockReading> clockOf(const Values& values);
  bool hasPlainYear(std::string_view text) const;

  DateFormatParts m_format;
  std::optional<FixedDateLayout> m_layout;
  std::shared_ptr<const DateNames> m_names;
  bool m_hasZone = false;
  std::size_t m_strictParts = 0;  // of them all texts have the form that is read here
  bool m_startsWithYear = false;
  std::ptrdiff_t m_minusSigns = 0;  // in the fixed text
  std::size_t m_fixedSize = 0;      // where digits below the millisecond may follow
};

}  // namespace kelvarin
