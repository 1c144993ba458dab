// A date format, and how a text in it is taken apart: into what the clock shows and the zone that
// the text states.
//
// Formats have the pattern letters of QDateTime; the letter `t` stands for the zone. The compiled
// form of the format is asked first, and QDateTime where that is not sure. The parser of QDateTime
// converts between zones while it reads, so it is only asked for the clock reading.
// Threads: read-only after its construction.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include <QString>

#include "expression/dates/clock_zone.h"
#include "expression/dates/date_printer.h"
#include "expression/dates/date_reader.h"
#include "expression/dates/stated_zone.h"

namespace kelvarin {

class DateReading {
 public:
  DateReading() = default;  // of a text that is no date
  explicit DateReading(ClockReading clock, std::string_view zone = {});

  bool isDate() const { return m_isDate; }
  ClockReading clock() const { return m_clock; }
  std::string_view zone() const { return {m_zone.data(), m_zoneSize}; }  // empty: none is stated

 private:
  bool m_isDate = false;
  ClockReading m_clock;
  std::array<char, kLongestZone> m_zone{};
  std::size_t m_zoneSize = 0;
};

class DateTextFormat {
 public:
  DateTextFormat() = default;
  // `isOfLocale`: names of days and months are those of the system's locale, else English.
  DateTextFormat(const QString& format, bool isOfLocale);

  const QString& text() const { return m_format; }
  bool hasDate() const { return m_hasDate; }

  DateReading read(std::string_view date) const;
  // The same for a text that needs no second look: one of the fixed layout of a format that has one
  // and no zone.
  std::optional<ClockReading> readFixed(std::string_view date) const {
    return m_reader ? m_reader->readFixed(date) : std::nullopt;
  }
  const DatePrinter& printer() const { return m_printer; }

 private:
  void examine();
  DateReading readGenerally(std::string_view date) const;
  DateReading readWithZone(const QString& date) const;
  DateReading readWithZoneAt(const QString& date, qsizetype start) const;
  std::optional<ClockReading> readClock(const QString& date) const;

  QString m_format;
  bool m_isOfLocale = false;
  bool m_hasDate = false;
  std::optional<DateReader> m_reader;  // the compiled form, where there is one
  DatePrinter m_printer;
  qsizetype m_zone = -1;   // index of the letter t
  QString m_clockPattern;  // the format with a mark in its stead
  QString m_beforeZone;    // what stands there in every text
  QString m_behindZone;
};

}  // namespace kelvarin
